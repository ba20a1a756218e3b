// A class for the Python tests, registered with the type library like every class of Tessel
// (and, like any class registered after `import tessel`, found by the package by itself). It
// covers the shapes of members that the Python host must handle and that the library's own
// classes may not all have yet: properties with one and two parameters, a ByRef event, an event
// with arguments, ByRef parameters, any error number through the error trap, a member named
// like the host's own `connect`, parameters named like the raw call's own (obj, name, kind), a
// DELETE that releases what the object owns (no class of the library has one yet),
// one-line descriptions, and input delivered to a picture box, which only C++ can do off screen.
#include <pybind11/pybind11.h>

#include <tessel/core/TypeLib.h>
#include <tessel/core/mdl_Err.h>
#include <tessel/host/PictureBox.h>

#include <map>
#include <string>

namespace tessel {

class cls_PyProbe final : public ObjectOf<cls_PyProbe> {
 public:
  static constexpr std::string_view ClassName = "cls_PyProbe";
  static const ClassInfo& typeInfo();

  // A keyed store: ITEM(pKey) get, let and set; the default member.
  Variant ITEM(const std::u16string& pKey) const {
    auto it = items_.find(pKey);
    return it == items_.end() ? Variant() : it->second;
  }
  void LETITEM(const std::u16string& pKey, const Variant& pValue) {
    trap("ITEM.LET", [&] {
      items_[pKey] = pValue;
      CHANGED.raise(pKey, pValue);
    });
  }
  // A 3 by 3 matrix of Singles, 1-based; 9 outside.
  float MATRIX(int32_t pRow, int32_t pCol) const {
    return trap("MATRIX.GET", [&] { return matrix_[index(pRow, pCol)]; });
  }
  void LETMATRIX(int32_t pRow, int32_t pCol, float pValue) {
    trap("MATRIX.LET", [&] { matrix_[index(pRow, pCol)] = pValue; });
  }
  Variant ECHO(const Variant& pAny) { return pAny; }
  std::u16string KIND(const Variant& pAny) {
    std::string n = tessel::typeName(pAny);
    return std::u16string(n.begin(), n.end());
  }
  int32_t SUM(int32_t pA, int32_t pB, int32_t pC) { return pA + pB + pC; }
  std::u16string JOIN(const std::u16string& obj, const std::u16string& name, const std::u16string& kind) {
    return obj + u"/" + name + u"/" + kind;
  }
  void BUMP(int32_t& pCounter, Variant& pCell) {
    pCounter += 1;
    pCell = Variant(u"bumped");
  }
  // Raises KEY; the handlers may change the key, and the result is what they left.
  int16_t PRESS(int16_t pKey) {
    KEY.raise(pKey);
    return pKey;
  }
  // Raises the error number through the trap; ATTEMPTS counts the runs of the body (retries).
  void FAIL(int32_t pNumber) {
    trap("FAIL", [&] {
      ++attempts_;
      raise(pNumber);
    });
  }
  int32_t ATTEMPTS() const { return attempts_; }
  // The native reference count of an object, for leak checks.
  int32_t REFCOUNT(const Variant& pObject) const { return pObject.obj() ? pObject.obj()->refCount() : 0; }
  // A member spelled like the host's own `connect`: the type name of what it was given.
  std::u16string CONNECT(const Variant& pConnect) { return KIND(pConnect); }
  // Sets the thread's terminate request (see mdl_Err::TerminateRequested).
  void REQUESTTERMINATE(bool pFlag) { mdl_Err::TerminateRequested = pFlag; }
  // Releases the object's store, as a wrapper frees its native handle; a second call fails (5).
  void DELETE() {
    trap("DELETE", [&] {
      if (released_) raise(rt::InvalidCall);
      items_.clear();
      released_ = true;
    });
  }
  bool RELEASED() const { return released_; }
  // Delivers a key going down to a picture box, as its view does; the key code the handlers left.
  int16_t KEYDOWN(const Variant& pBox, int16_t pKeyCode) {
    return trap("KEYDOWN", [&] {
      auto* box = dynamic_cast<PictureBox*>(pBox.obj());
      if (!box) raise(rt::TypeMismatch);
      int16_t shift = 0;
      box->deliver(&PictureBox::KeyDown, pKeyCode, shift);
      return pKeyCode;
    });
  }

  Event<int16_t&> KEY;
  Event<std::u16string, Variant> CHANGED;

 private:
  static size_t index(int32_t row, int32_t col) {
    if (row < 1 || row > 3 || col < 1 || col > 3) raise(rt::SubscriptOutOfRange);
    return static_cast<size_t>((row - 1) * 3 + (col - 1));
  }
  std::map<std::u16string, Variant> items_;
  float matrix_[9] = {};
  int32_t attempts_ = 0;
  bool released_ = false;
};

const ClassInfo& cls_PyProbe::typeInfo() {
  using C = cls_PyProbe;
  static const ClassInfo info = ClassBuilder<C>()
      .creatable()
      .get("ITEM", &C::ITEM, {"pKey"})
      .let("ITEM", &C::LETITEM, {"pKey"})
      .set("ITEM", &C::LETITEM, {"pKey"})
      .get("MATRIX", &C::MATRIX, {"pRow", "pCol"})
      .let("MATRIX", &C::LETMATRIX, {"pRow", "pCol"})
      .method("ECHO", &C::ECHO, {opt("pAny")})
      .method("KIND", &C::KIND, {opt("pAny")})
      .method("SUM", &C::SUM, {"pA", opt("pB", 10), opt("pC")})
      .method("JOIN", &C::JOIN, {"obj", "name", "kind"})
      .method("BUMP", &C::BUMP, {"pCounter", "pCell"})
      .method("PRESS", &C::PRESS, {"pKey"})
      .method("FAIL", &C::FAIL, {"pNumber"})
      .get("ATTEMPTS", &C::ATTEMPTS)
      .method("REFCOUNT", &C::REFCOUNT, {"pObject"})
      .method("REQUESTTERMINATE", &C::REQUESTTERMINATE, {"pFlag"})
      .method("CONNECT", &C::CONNECT, {"pConnect"})
      .method("DELETE", &C::DELETE)
      .get("RELEASED", &C::RELEASED)
      .method("KEYDOWN", &C::KEYDOWN, {"pBox", "pKeyCode"})
      .event("KEY", &C::KEY, {"KeyAscii"})
      .event("CHANGED", &C::CHANGED, {"pKey", "pValue"})
      .defaultMember("ITEM")
      .describe("Test fixture of the Python host.")
      .describe("SUM", "Adds three numbers.")
      .describe("ATTEMPTS", "How often FAIL ran its body.")
      .describe("CHANGED", "An item was assigned.");
  return info;
}
TESSEL_REGISTER_CLASS(cls_PyProbe)

}  // namespace tessel

// Importing the module registers the class; it has nothing else to offer.
PYBIND11_MODULE(_tessel_testprobe, m) { m.doc() = "Test fixture: registers cls_PyProbe with Tessel's type library."; }
