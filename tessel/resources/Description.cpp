#include <tessel/resources/Description.h>

#include <tessel/core/Root.h>
#include <tessel/core/Text.h>
#include <tessel/core/mdl_Basalt.h>
#include <tessel/core/mdl_Global.h>

namespace tessel {

// Only the whole text is trimmed: a piece keeps its blanks, so " bold" reads as a name (as the
// object model has it).
bool IsNoResource(const Variant& v) noexcept {
  return v.isMissing() || (v.isString() && (v.str().empty() || equalsIgnoreCase(v.str(), u"none")));
}

bool ReadDescription(const std::u16string& text, std::u16string_view thing,
                     const std::function<bool(const DescriptionPiece&)>& take) {
  std::u16string cleaned(trimBlanks(text));
  for (char16_t& c : cleaned)
    if (c == u'\'') c = u'"';
  for (const std::u16string& piece : mdl_Basalt::Split(cleaned, u',', u"(", u")", u'"')) {
    if (piece.empty()) continue;
    DescriptionPiece decoded;
    auto& v = decoded.value;
    mdl_Global::PARADECODE(piece, decoded.kind, v[0], v[1], v[2], v[3]);
    if (take(decoded)) continue;
    rootErrorSet(u"Wrong arguments '" + text + u"' for " + std::u16string(thing) + u" creation: Parameter '" +
                 piece + u"' (type " + mdl_Global::PARATYPETEXT(decoded.kind) + u") not accepted");
    return false;
  }
  return true;
}

}  // namespace tessel
