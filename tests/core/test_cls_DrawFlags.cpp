// The flags collection: keyed reads with defaults, keys in any case, and its late-bound face.
#include <tessel/core/cls_DrawFlags.h>

#include <gtest/gtest.h>

#include "TestSupport.h"
#include "core/ErrorCapture.h"

using namespace tessel;

TEST(Flags, KeyedReadFallsBackToTheDefault) {
  auto flags = make<cls_DrawFlags>();
  EXPECT_EQ(flags->FLAG(u"WIDTH", int16_t(100)), Variant(int16_t(100)));
  EXPECT_TRUE(flags->FLAG(u"WIDTH").isEmpty());
  EXPECT_TRUE(flags->FLAG(u"WIDTH", Variant::missing()).isEmpty());  // never hands Missing on

  flags->SETFLAG(u"Width", 640)->SETFLAG(u"HEIGHT", u"480");
  EXPECT_EQ(flags->FLAG(u"width", int16_t(100)), Variant(640));
  EXPECT_EQ(flags->FLAG(u"height", 0).toLong(), 480);
  EXPECT_EQ(flags->count(), 2);

  flags->SETFLAG(u"WIDTH", 800);  // same key in another case replaces, keeping the first spelling
  EXPECT_EQ(flags->count(), 2);
  EXPECT_EQ(flags->FLAG(u"Width"), Variant(800));
  EXPECT_EQ(flags->KEY(1), u"Width");
  EXPECT_EQ(flags->KEY(2), u"HEIGHT");
}

TEST(Flags, RemoveClearAndExists) {
  auto flags = make<cls_DrawFlags>();
  flags->SETFLAG(u"a", 1)->SETFLAG(u"b", 2)->SETFLAG(u"c", 3);
  EXPECT_TRUE(flags->REMOVE(u"B"));
  EXPECT_FALSE(flags->REMOVE(u"B"));
  EXPECT_FALSE(flags->EXISTS(u"b"));
  EXPECT_TRUE(flags->EXISTS(u"C"));
  EXPECT_EQ(flags->KEY(2), u"c");  // order of the rest is kept
  flags->SETFLAG(u"", u"empty key");
  EXPECT_EQ(flags->FLAG(u""), Variant(u"empty key"));
  flags->CLEAR();
  EXPECT_EQ(flags->count(), 0);
  EXPECT_FALSE(flags->EXISTS(u"a"));
}

TEST(Flags, HoldsObjectsButNotItself) {
  ErrorCapture quiet;
  auto flags = make<cls_DrawFlags>();
  auto other = make<cls_DrawFlags>();
  flags->SETFLAG(u"child", Variant(other));
  EXPECT_EQ(other->refCount(), 2);
  flags->REMOVE(u"child");
  EXPECT_EQ(other->refCount(), 1);

  try {
    flags->SETFLAG(u"me", Variant(flags));
    FAIL() << "no error";
  } catch (const Error& e) {
    EXPECT_EQ(e.number(), static_cast<int32_t>(0x80040005));
    EXPECT_EQ(e.source(), "cls_DrawFlags.SETFLAG");
  }
  EXPECT_EQ(flags->refCount(), 1);
  EXPECT_FALSE(flags->EXISTS(u"me"));

  // Nor through others: a → b → c, and c may not take a. Shared parts are no cycle.
  auto b = make<cls_DrawFlags>(), c = make<cls_DrawFlags>();
  flags->SETFLAG(u"b", Variant(b))->SETFLAG(u"c", Variant(c));
  b->SETFLAG(u"c", Variant(c));
  EXPECT_EQ(raisedNumber([&] { c->SETFLAG(u"a", Variant(flags)); }), objectError(5));
  EXPECT_EQ(raisedNumber([&] { b->SETFLAG(u"a", Variant(flags)); }), objectError(5));
  EXPECT_EQ(c->count(), 0);
  flags = nullptr;  // nothing holds a: it goes, and lets go of b and c
  EXPECT_EQ(b->refCount(), 1);
  EXPECT_EQ(c->refCount(), 2);
}

TEST(Flags, LateBoundWithTheKeyedReadAsDefaultMember) {
  ErrorCapture quiet;
  Ref<Object> flags = TypeLib::findClass("cls_DrawFlags")->create();
  Invoke(flags.get(), "SETFLAG", InvokeKind::Method, {Variant(u"WIDTH"), Variant(int16_t(300))});
  EXPECT_EQ(Invoke(flags.get(), "", InvokeKind::Get, {Variant(u"width"), Variant(int16_t(100))}),
            Variant(int16_t(300)));
  EXPECT_EQ(Invoke(flags.get(), "FLAG", InvokeKind::Method, {Variant(u"HEIGHT"), Variant(int16_t(100))}),
            Variant(int16_t(100)));
  EXPECT_EQ(Invoke(flags.get(), "COUNT", InvokeKind::Get, {}), Variant(1));
  try {
    Invoke(flags.get(), "KEY", InvokeKind::Method, {Variant(2)});
    FAIL() << "no error";
  } catch (const Error& e) {
    EXPECT_EQ(e.number(), static_cast<int32_t>(0x80040009));
    EXPECT_EQ(e.source(), "cls_DrawFlags.KEY");
  }
}
