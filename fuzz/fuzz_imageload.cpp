// Fuzzes the image files LOAD reads: any bytes either give an image, which reads, resizes and
// keeps valid premultiplied pixels, or fail with 481 (7 when the image is too large for the memory
// allowed below) and leave the image as it was. No input may leave a native object behind.
//
// The bytes go to one file that lives in memory, reused for every input, so the run writes
// nothing to disk. Seeds: fuzz/seeds/imageload (one small file of each format LOAD reads).
//
// libgdiplus leaks on damaged files (below), so memory grows with the files tried, by up to 8 MB
// for a PNG that claims a million rows: about 1 GB resident after a minute or two. A run of many
// minutes wants a higher -rss_limit_mb than libFuzzer's 2 GB.
//
// Input: the file's bytes.
#include "FuzzSupport.h"

#include <tessel/core/Text.h>
#include <tessel/root/cls_DrawTool.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string>

#include <fcntl.h>
#include <sanitizer/common_interface_defs.h>
#include <sys/mman.h>
#include <unistd.h>

using namespace tessel;
namespace gp = tessel::mdl_GDIPlus;

namespace {

int gFile = -1;
std::u16string gPath;

// libFuzzer sees the coverage of our code only, not the decoders' (libgdiplus is not
// instrumented), so every file looked alike and the seeds of all formats but one were dropped.
// These counters, which libFuzzer reads as coverage, tell inputs apart by format, by outcome and,
// for images, by the order of magnitude of each side.
enum Format { kPng, kJpeg, kGif, kBmp, kTiff, kOther, kFormats };
__attribute__((used, section("__libfuzzer_extra_counters"))) uint8_t gOutcomes[kFormats * 2];
__attribute__((used, section("__libfuzzer_extra_counters"))) uint8_t gSides[kFormats * 16 * 2];

Format formatOf(const uint8_t* data, size_t size) {
  auto starts = [&](const char* magic, size_t n) { return size >= n && std::memcmp(data, magic, n) == 0; };
  if (starts("\x89PNG", 4)) return kPng;
  if (starts("\xFF\xD8", 2)) return kJpeg;
  if (starts("GIF8", 4)) return kGif;
  if (starts("BM", 2)) return kBmp;
  if (starts("II*\0", 4) || starts("MM\0*", 4)) return kTiff;
  return kOther;
}

int magnitude(int32_t side) { return std::min<int>(15, std::bit_width(static_cast<uint32_t>(side))); }

// The decoders' libraries report every corrupt file on standard error (libpng itself, libgdiplus
// through GLib's log), thousands of lines that would bury libFuzzer's. Standard error is quiet
// while a file is read; sanitizer reports go to a copy of it, so a fault inside the decoders
// still shows.
int gStderr = -1, gNull = -1;
struct QuietStderr {
  QuietStderr() { ::dup2(gNull, 2); }
  ~QuietStderr() { ::dup2(gStderr, 2); }
};

bool validPremultiplied(const Ref<cls_DrawImage>& image) {
  ExportedBuffer view{};
  CHECK(image->exportBuffer(view));
  bool valid = true;
  for (int64_t y = 0; y < view.rows; ++y) {
    const auto* p = static_cast<const uint8_t*>(view.data) + y * view.rowStride;
    for (int64_t x = 0; x < view.columns; ++x, p += 4) valid = valid && p[0] <= p[3] && p[1] <= p[3] && p[2] <= p[3];
  }
  image->unexportBuffer();
  return valid;
}

void checkFile(Format format) {
  auto image = make<cls_DrawImage>()->CREATE(1, 1);
  const int64_t before = image->HANDLE();
  try {
    QuietStderr quiet;
    image->LOAD(gPath);
  } catch (const Error& e) {
    auto raised = [&](int32_t number) { return e.number() == static_cast<int32_t>(0x80040000u | number); };
    CHECK((raised(rt::InvalidPicture) || raised(rt::OutOfMemory)) && e.source() == "cls_DrawImage.LOAD");
    CHECK(image->HANDLE() == before && image->WIDTH() == 1);
    gOutcomes[format * 2] = 1;
    return;
  }
  const auto width = static_cast<int32_t>(image->WIDTH()), height = static_cast<int32_t>(image->HEIGHT());
  gOutcomes[format * 2 + 1] = 1;
  gSides[(format * 16 + magnitude(width)) * 2] = 1;
  gSides[(format * 16 + magnitude(height)) * 2 + 1] = 1;
  CHECK(width >= 1 && height >= 1 && image->FILENAME() == gPath);
  CHECK(validPremultiplied(image));
  (void)image->PIXEL(width - 1, height / 2);
  image->RESIZE(8, 8, true);
  CHECK(image->WIDTH() >= 1 && image->WIDTH() <= 8 && image->HEIGHT() >= 1 && image->HEIGHT() <= 8);
  CHECK(image->WIDTH() == 8 || image->HEIGHT() == 8);
  CHECK(validPremultiplied(image));
}

}  // namespace

// libgdiplus 6.1 leaks on two decoders' error paths (fuzz/crashes-libgdiplus): the PNG reader its
// row pointers when libpng fails inside the rows, the JPEG reader libjpeg's memory pools on some
// failures. Leaks that start in either library are not findings here; the native objects that
// Tessel owns are counted by kind after every input instead.
extern "C" const char* __lsan_default_suppressions() { return "leak:libgdiplus.so\nleak:libjpeg.so\n"; }
extern "C" const char* __lsan_default_options() { return "print_suppressions=0"; }

// A header may claim any size, and libgdiplus allocates the whole bitmap before it finds the data
// short; a few such inputs would take the run past libFuzzer's memory limit. Allocations above
// 64 MB (16 megapixels) fail here, as they may in any process short of memory: libgdiplus tests
// for null and fails the load, and the image's own copy fails with 7 (out of memory). Sizes that
// wrapped negative in libgdiplus's 32-bit arithmetic (a GIF frame's width × height) fail the
// same way.
extern "C" const char* __asan_default_options() { return "allocator_may_return_null=1:max_allocation_size_mb=64"; }

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  fuzzing::refuseDialogs();
  gStderr = ::fcntl(2, F_DUPFD_CLOEXEC, 3);
  gNull = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
  CHECK(gStderr >= 0 && gNull >= 0);
  __sanitizer_set_report_fd(reinterpret_cast<void*>(static_cast<intptr_t>(gStderr)));
  mdl_Global::DRAW()->INIT();
  gFile = ::memfd_create("fuzz-image", MFD_CLOEXEC);
  CHECK(gFile >= 0);
  gPath = toUtf16("/proc/self/fd/" + std::to_string(gFile));
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  CHECK(::ftruncate(gFile, 0) == 0);
  CHECK(::pwrite(gFile, data, size, 0) == static_cast<ssize_t>(size));
  const auto natives = gp::LiveHandles();
  checkFile(formatOf(data, size));
  CHECK(gp::LiveHandles() == natives);
  return 0;
}
