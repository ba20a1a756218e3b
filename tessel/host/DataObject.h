// The data of a drag and drop (DataObject.members): a text and a list of files, the two kinds of
// data that dragging between programs on the desktop carries.
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/host/DataObject.members.h>

#include <string>
#include <vector>

namespace tessel {

class DataObject final : public ObjectOf<DataObject> {
  TESSEL_MEMBERS(DataObject)

 public:
  // The data formats, numbered as the clipboard numbers them.
  static constexpr int16_t kFormatText = 1;
  static constexpr int16_t kFormatFiles = 15;

 private:
  std::u16string text_;
  std::vector<std::u16string> files_;
};

}  // namespace tessel
