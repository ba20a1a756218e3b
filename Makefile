# Tessel: `make demo` sets the machine up, builds and runs the showcase; `make test` sets up,
# builds and runs every test.
BUILD   ?= build
PYTHON  ?= /usr/bin/python3
JOBS    ?= $(shell nproc)
CMAKE_FLAGS ?= -DCMAKE_BUILD_TYPE=RelWithDebInfo -DPython_EXECUTABLE=$(PYTHON)

.PHONY: all setup configure build test test-cpp test-python demo bench fuzz install clean reference sanitize

all: build

setup:
	@bash scripts/setup.sh

$(BUILD)/build.ninja: CMakeLists.txt | setup
	cmake -S . -B $(BUILD) -G Ninja $(CMAKE_FLAGS)

configure: setup $(BUILD)/build.ninja

build: configure
	cmake --build $(BUILD) -j $(JOBS)

test: build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS)
	@if [ -d tests/python ] && ls tests/python/test_*.py >/dev/null 2>&1; then \
	  env -u DISPLAY PYTHONPATH=$(BUILD)/python $(PYTHON) -m pytest -q tests/python; fi

demo: build
	@mkdir -p out
	env -u DISPLAY $(BUILD)/bin/tessel-showcase out/showcase.png
	@if [ -f apps/showcase.py ]; then env -u DISPLAY PYTHONPATH=$(BUILD)/python $(PYTHON) apps/showcase.py out; fi

bench: build
	@if [ -x $(BUILD)/bin/tessel-bench ]; then \
	  env -u DISPLAY $(BUILD)/bin/tessel-bench --benchmark_out=$(BUILD)/bench.json --benchmark_out_format=json >/dev/null && \
	  $(PYTHON) bench/report.py $(BUILD)/bench.json; fi
	@if [ -f bench/bench_python.py ]; then PYTHONPATH=$(BUILD)/python $(PYTHON) bench/bench_python.py; fi

# The C++ tests again under AddressSanitizer and UndefinedBehaviorSanitizer.
SAN_BUILD ?= build-sanitize
SAN_FLAGS := -fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined
sanitize: setup
	cmake -S . -B $(SAN_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Debug -DTESSEL_BUILD_PYTHON=OFF -DTESSEL_BUILD_BENCH=OFF \
	  -DCMAKE_CXX_FLAGS="$(SAN_FLAGS)" -DCMAKE_EXE_LINKER_FLAGS="$(SAN_FLAGS)" -DCMAKE_SHARED_LINKER_FLAGS="$(SAN_FLAGS)"
	cmake --build $(SAN_BUILD) -j $(JOBS)
	cd $(SAN_BUILD) && ASAN_OPTIONS=detect_leaks=1 LSAN_OPTIONS=suppressions=$(CURDIR)/scripts/lsan.supp UBSAN_OPTIONS=print_stacktrace=1 ctest --output-on-failure -j $(JOBS)

# Fuzzes every parser (fuzz/fuzz_*.cpp) with clang's libFuzzer, FUZZ_TIME seconds shared among
# the targets; fails on any finding. A target's dictionary is fuzz/<name>.dict, when there is one.
FUZZ_BUILD   ?= build-fuzz
FUZZ_TIME    ?= 60
FUZZ_TARGETS := $(patsubst fuzz/fuzz_%.cpp,%,$(wildcard fuzz/fuzz_*.cpp))
fuzz: setup
	cmake -S fuzz -B $(FUZZ_BUILD) -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo
	cmake --build $(FUZZ_BUILD) -j $(JOBS)
	@share=$$(( $(FUZZ_TIME) / $(words $(FUZZ_TARGETS)) )); [ $$share -ge 1 ] || share=1; \
	for t in $(FUZZ_TARGETS); do \
	  mkdir -p $(FUZZ_BUILD)/corpus/$$t; \
	  dict=; [ -f fuzz/$$t.dict ] && dict=-dict=$(CURDIR)/fuzz/$$t.dict; \
	  echo "fuzz_$$t for $$share s"; \
	  (cd $(FUZZ_BUILD) && env -u DISPLAY ./fuzz_$$t -max_total_time=$$share -timeout=10 $$dict \
	    -print_final_stats=1 corpus/$$t) || exit 1; \
	done

# Refreshes docs/reference from the member tables (a test fails while they differ).
reference: build
	rm -rf docs/reference && cp -r $(BUILD)/reference docs/reference

install: build
	cmake --install $(BUILD)

clean:
	rm -rf $(BUILD) $(FUZZ_BUILD) $(SAN_BUILD) out
