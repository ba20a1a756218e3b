// The descriptions that resource factories read in place of arguments ("#FF0000,3px" for a
// pen, "Arial,12pt,bold" for a font), written once:
//
// - the whole text is trimmed of blanks, every ' becomes ", and the text is split at commas
//   with ( ) as brackets and " as quotes; a piece keeps its blanks, brackets and quotes;
// - each non-empty piece is decoded by the parameter language (mdl_Global::PARADECODE) and
//   offered to the factory, which takes it or refuses it;
// - the first piece refused ends the reading: the root's ERRORSET is told "Wrong arguments
//   '<text>' for <thing> creation: Parameter '<piece>' (type <kind>) not accepted", and the
//   factory makes an empty resource. A bad description is no failure of the call.
#pragma once

#include <tessel/core/Variant.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace tessel {

// One decoded piece: PARADECODE's kind and values.
struct DescriptionPiece {
  int32_t kind = -1;
  Variant value[4];
};

// Whether a pen or brush argument asks for the empty resource: omitted, the empty text, or
// "none" in any case.
bool IsNoResource(const Variant& v) noexcept;

// Reads `text` piece by piece into `take`, which answers whether it accepts the piece. False
// after reporting the first refused piece; `thing` names what was to be made ("pen", "font").
bool ReadDescription(const std::u16string& text, std::u16string_view thing,
                     const std::function<bool(const DescriptionPiece&)>& take);

}  // namespace tessel
