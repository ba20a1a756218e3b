// The image cache (cls_DrawResources.members): images under names, for icons and skins. The
// root's RESOURCES is also where the image factory's AUTO keeps the files it reads, under their
// full paths, so that a file is read once while it stays as it was.
//
// The cache hands out the images it holds, not copies: icons are read far more often than
// changed, and a change made through one reference shows through every other, as intended.
#pragma once

#include <tessel/core/TypeLib.h>
#include <tessel/images/cls_DrawImage.h>
#include <tessel/images/cls_DrawNames.h>
#include <tessel/images/cls_DrawResources.members.h>

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

namespace tessel {

class cls_DrawResources final : public ObjectOf<cls_DrawResources> {
  TESSEL_MEMBERS(cls_DrawResources)

 public:
  // The file's image, stored under the file's absolute, lexically normal path (symbolic links
  // are left unresolved). Read again when the file's time, size or identity changed since, or
  // when the image was emptied. A file that is missing or no image raises 53 or 481, without a
  // trap, and nothing is stored.
  Ref<cls_DrawImage> fromFile(const std::u16string& file);

 private:
  // What a file looked like when it was read: a change in any of these reads it again.
  struct Stamp {
    int64_t seconds = 0, nanoseconds = 0;
    off_t size = 0;
    ino_t inode = 0;
    dev_t device = 0;
    bool operator==(const Stamp&) const = default;
  };
  struct Entry {
    std::u16string name;
    Ref<cls_DrawImage> image;
    std::string file;  // for images that fromFile read: the path as the system spells it
    Stamp stamp;
  };
  static constexpr size_t npos = static_cast<size_t>(-1);

  size_t find(std::u16string_view name) const noexcept;
  // Stores the entry in the place of one of the same name, or last.
  void store(Entry entry);

  std::vector<Entry> entries_;
};

}  // namespace tessel
