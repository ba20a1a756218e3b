// The measurement peer of bench/bench_python.py: the same members that scripts reach through
// the type library, bound by hand with pybind11, one line each. Not part of the package.
#include <pybind11/pybind11.h>

#include <chrono>
#include <string>

#include <tessel/root/cls_DrawTool.h>
#include <tessel/root/sys_Global.h>
#include <tessel/geometry/cls_DrawPoint.h>
#include <tessel/geometry/cls_DrawRect.h>

#include "Photo.h"
#include "Scenes.h"

namespace py = pybind11;
using namespace tessel;

PYBIND11_DECLARE_HOLDER_TYPE(T, tessel::Ref<T>, true)

namespace {

// Nanoseconds per call of f, best of five runs of n calls.
template <class F>
double timePerCall(long n, F&& f) {
  double best = 1e30;
  for (int run = 0; run < 5; ++run) {
    auto t0 = std::chrono::steady_clock::now();
    for (long i = 0; i < n; ++i) f();
    auto t1 = std::chrono::steady_clock::now();
    best = std::min(best, std::chrono::duration<double, std::nano>(t1 - t0).count() / static_cast<double>(n));
  }
  return best;
}

volatile double gSink;

}  // namespace

PYBIND11_MODULE(_tessel_bench_direct, m) {
  py::class_<cls_DrawTool, Ref<cls_DrawTool>>(m, "DrawTool", py::module_local())
      .def("READY", py::overload_cast<>(&cls_DrawTool::READY, py::const_));
  py::class_<cls_DrawPoint, Ref<cls_DrawPoint>>(m, "DrawPoint", py::module_local())
      .def_property("X", py::overload_cast<>(&cls_DrawPoint::X, py::const_),
                    py::overload_cast<double>(&cls_DrawPoint::X))
      .def("MOVE", py::overload_cast<double, double>(&cls_DrawPoint::MOVE));
  py::class_<cls_DrawRect, Ref<cls_DrawRect>>(m, "DrawRect", py::module_local())
      .def_property("X", py::overload_cast<>(&cls_DrawRect::X, py::const_), py::overload_cast<float>(&cls_DrawRect::X))
      .def("MOVE", py::overload_cast<float, float, float, float>(&cls_DrawRect::MOVE));
  m.def("root", [] { return mdl_Global::DRAW(); });
  m.def("point", [] { return make<cls_DrawPoint>(); });
  m.def("rect", [] { return make<cls_DrawRect>(); });

  // The same get from C++: the member function itself, and the late-bound Invoke by name.
  m.def("cpp_get_ns", [](long n) {
    Ref<cls_DrawPoint> p = make<cls_DrawPoint>();
    cls_DrawPoint* volatile target = p.get();
    return timePerCall(n, [&] { gSink = target->X(); });
  });
  m.def("cpp_invoke_ns", [](long n) {
    Ref<cls_DrawPoint> p = make<cls_DrawPoint>();
    return timePerCall(n, [&] { gSink = Invoke(p.get(), "X", InvokeKind::Get, std::span<Variant>()).toDouble(); });
  });
  // A solid brush from a colour text, made and dropped: the typed call and the late-bound one.
  m.def("cpp_brush_auto_ns", [](long n) {
    mdl_Global::DRAW()->INIT();
    return timePerCall(n, [] { gSink = static_cast<double>(mdl_Global::DRAW()->BRUSH()->AUTO(Variant(u"#FF8000"))->HANDLE()); });
  });
  m.def("cpp_brush_auto_invoke_ns", [](long n) {
    mdl_Global::DRAW()->INIT();
    return timePerCall(n, [] {
      Variant text(u"#FF8000");
      Variant brush = Invoke(Invoke(mdl_Global::DRAW().get(), "BRUSH", InvokeKind::Get, std::span<Variant>()), "AUTO",
                             InvokeKind::Method, std::span<Variant>(&text, 1));
      gSink = static_cast<double>(brush.isObject());
    });
  });
  // The surface's scene S1 of bench/bench_surface.cpp with the raw flat API: the baseline of the
  // scripted scene.
  m.def("raw_shapes_ns", [](long n) {
    mdl_Global::DRAW()->INIT();
    bench::RawTarget t;
    return timePerCall(n, [&] { bench::rawShapes(t.graphics.get(), false); });
  });
  // The image round trip of bench/bench_images.cpp, typed: its photo written once, then a 640 × 480
  // copy of it read, resampled and saved.
  m.def("photo_png", [](const std::string& file) { bench::photo(1024, 768)->SAVE(toUtf16(file)); });
  m.def("cpp_image_round_trip_ns", [](const std::string& from, const std::string& to, long n) {
    const std::u16string source = toUtf16(from), target = toUtf16(to);
    return timePerCall(n, [&] { gSink = make<cls_DrawImage>()->LOAD(source)->RESIZE(640, 480)->SAVE(target); });
  });
}
