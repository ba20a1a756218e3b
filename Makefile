# Tessel: `make demo` sets the machine up, builds and runs the showcase; `make test` sets up,
# builds and runs every test.
BUILD   ?= build
PYTHON  ?= /usr/bin/python3
JOBS    ?= $(shell nproc)
CMAKE_FLAGS ?= -DCMAKE_BUILD_TYPE=RelWithDebInfo -DPython_EXECUTABLE=$(PYTHON)

.PHONY: all setup configure build test test-cpp test-python demo screenshots bench fuzz install clean reference sanitize tsan soak pictures

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
	@# On a display, the showcase as a desktop program too.
	@if [ -n "$$DISPLAY$$WAYLAND_DISPLAY" ]; then $(BUILD)/bin/tessel-desktop || echo "The display could not be opened: the pictures are in out/."; \
	 else echo "No display: the pictures are in out/. With one, make demo also opens the desktop program."; fi

# The pictures of the guide (docs/pictures), drawn by the showcase.
pictures: build
	@mkdir -p out/pictures
	env -u DISPLAY $(BUILD)/bin/tessel-showcase out/pictures/showcase.png
	cp out/pictures/resources.png out/pictures/images.png out/pictures/surface.png out/pictures/icons.png out/pictures/controls.png docs/pictures/

# The screenshots of the guide (docs/pictures/host-*.png): the desktop program on an Xvfb of
# its own, driven with xdotool.
screenshots: build
	$(PYTHON) scripts/screenshots.py $(BUILD) docs/pictures

bench: build
	@if [ -x $(BUILD)/bin/tessel-bench ]; then \
	  env -u DISPLAY $(BUILD)/bin/tessel-bench --benchmark_out=$(BUILD)/bench.json --benchmark_out_format=json >/dev/null && \
	  $(PYTHON) bench/report.py $(BUILD)/bench.json; fi
	@if [ -f bench/bench_python.py ]; then PYTHONPATH=$(BUILD)/python $(PYTHON) bench/bench_python.py; fi

# The C++ tests again under AddressSanitizer and UndefinedBehaviorSanitizer, then the Python
# tests against the sanitized library and module. The interpreter is not instrumented: it runs
# with the sanitizer's runtime preloaded (libstdc++ with it, so that exceptions pass the
# runtime's interceptors) and without leak detection, since it does not free everything at exit.
# Tests that start interpreters of their own hand the environment on.
SAN_BUILD ?= build-sanitize
SAN_FLAGS := -fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined
SAN_PRELOAD = $(shell c++ -print-file-name=libasan.so) $(shell c++ -print-file-name=libstdc++.so)
sanitize: setup
	cmake -S . -B $(SAN_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Debug -DTESSEL_BUILD_PYTHON=ON -DTESSEL_BUILD_BENCH=OFF \
	  -DPython_EXECUTABLE=$(PYTHON) -DCMAKE_CXX_FLAGS="$(SAN_FLAGS)" -DCMAKE_EXE_LINKER_FLAGS="$(SAN_FLAGS)" \
	  -DCMAKE_SHARED_LINKER_FLAGS="$(SAN_FLAGS)" -DCMAKE_MODULE_LINKER_FLAGS="$(SAN_FLAGS)"
	cmake --build $(SAN_BUILD) -j $(JOBS)
	cd $(SAN_BUILD) && ASAN_OPTIONS=detect_leaks=1 LSAN_OPTIONS=suppressions=$(CURDIR)/scripts/lsan.supp UBSAN_OPTIONS=print_stacktrace=1 ctest --output-on-failure -j $(JOBS)
	env -u DISPLAY LD_PRELOAD="$(SAN_PRELOAD)" ASAN_OPTIONS=detect_leaks=0 UBSAN_OPTIONS=print_stacktrace=1 \
	  PYTHONPATH=$(SAN_BUILD)/python $(PYTHON) -m pytest -q tests/python

# The threading tests under ThreadSanitizer: the C++ ones, ten seconds of the soak's threads, then
# the Python ones in an interpreter that has the sanitizer's runtime preloaded (it must be loaded
# first, with the libstdc++ it uses).
TSAN_BUILD ?= build-tsan
TSAN_FLAGS := -fsanitize=thread -fno-omit-frame-pointer
TSAN_PRELOAD = $(shell gcc -print-file-name=libtsan.so) $(shell gcc -print-file-name=libstdc++.so)
TSAN_OPTIONS_RUN := halt_on_error=1 second_deadlock_stack=1 suppressions=$(CURDIR)/scripts/tsan.supp
tsan: setup
	cmake -S . -B $(TSAN_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTESSEL_BUILD_BENCH=OFF \
	  -DPython_EXECUTABLE=$(PYTHON) -DCMAKE_CXX_FLAGS="$(TSAN_FLAGS)" -DCMAKE_EXE_LINKER_FLAGS="$(TSAN_FLAGS)" \
	  -DCMAKE_SHARED_LINKER_FLAGS="$(TSAN_FLAGS)" -DCMAKE_MODULE_LINKER_FLAGS="$(TSAN_FLAGS)"
	cmake --build $(TSAN_BUILD) -j $(JOBS) --target tests_root tessel-soak _tessel _tessel_testprobe
	env -u DISPLAY TSAN_OPTIONS="$(TSAN_OPTIONS_RUN)" $(TSAN_BUILD)/tests/tests_root --gtest_filter='Threads.*:Global.*'
	env -u DISPLAY TSAN_OPTIONS="$(TSAN_OPTIONS_RUN)" SOAK_CYCLES=2000 SOAK_ERRORS=2000 SOAK_SECONDS=10 \
	  $(TSAN_BUILD)/bin/tessel-soak
	env -u DISPLAY TSAN_OPTIONS="$(TSAN_OPTIONS_RUN)" LD_PRELOAD="$(TSAN_PRELOAD)" PYTHONPATH=$(TSAN_BUILD)/python \
	  $(PYTHON) -m pytest -q -p no:cacheprovider tests/python/test_threads.py tests/python/test_objects.py

# Long runs that must leave nothing behind (apps/soak.cpp): every class created, used and dropped,
# failing calls, eight threads for SOAK_SECONDS; fails when memory or native handles grow.
soak: build
	env -u DISPLAY $(BUILD)/bin/tessel-soak

# Fuzzes every parser (fuzz/fuzz_*.cpp) with clang's libFuzzer, FUZZ_TIME seconds shared among
# the targets; fails on any finding. A target's dictionary is fuzz/<name>.dict and its seed inputs
# fuzz/seeds/<name>/, when there are any.
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
	  seeds=; [ -d fuzz/seeds/$$t ] && seeds=$(CURDIR)/fuzz/seeds/$$t; \
	  echo "fuzz_$$t for $$share s"; \
	  (cd $(FUZZ_BUILD) && env -u DISPLAY LSAN_OPTIONS=suppressions=$(CURDIR)/scripts/lsan.supp ./fuzz_$$t -max_total_time=$$share -timeout=10 $$dict \
	    -print_final_stats=1 corpus/$$t $$seeds) || exit 1; \
	done

# Refreshes docs/reference from the member tables (a test fails while they differ).
reference: build
	rm -rf docs/reference && cp -r $(BUILD)/reference docs/reference

install: build
	cmake --install $(BUILD)

clean:
	rm -rf $(BUILD) $(FUZZ_BUILD) $(SAN_BUILD) $(TSAN_BUILD) out
