#include <tessel/images/cls_DrawResources.h>

#include <tessel/core/Text.h>
#include <tessel/images/cls_DrawToolImage.h>

#include <fnmatch.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace tessel {

namespace fs = std::filesystem;

size_t cls_DrawResources::find(std::u16string_view name) const noexcept {
  for (size_t k = 0; k < entries_.size(); ++k)
    if (equalsIgnoreCase(entries_[k].name, name)) return k;
  return npos;
}

void cls_DrawResources::store(Entry entry) {
  const size_t k = find(entry.name);
  if (k == npos) {
    entries_.push_back(std::move(entry));
    return;
  }
  // The old image is released only once the cache is consistent again.
  std::swap(entries_[k], entry);
}

Ref<cls_DrawImage> cls_DrawResources::fromFile(const std::u16string& file) {
  std::error_code ec;
  const fs::path full = fs::absolute(fs::path(toUtf8(file)), ec).lexically_normal();
  struct stat st{};
  if (ec || file.find(u'\0') != std::u16string::npos || ::stat(full.c_str(), &st) != 0 || !S_ISREG(st.st_mode))
    return cls_DrawImage::read(file);  // raises what the name deserves (53, 481)
  const Stamp now{st.st_mtim.tv_sec, st.st_mtim.tv_nsec, st.st_size, st.st_ino, st.st_dev};
  const std::u16string name = toUtf16(full.string());
  // Names ignore case, file systems do not: only the very same path is a hit. An image that a
  // user emptied (DELETE) is read again rather than handed out empty to everyone.
  const size_t k = find(name);
  if (k != npos && entries_[k].file == full.string() && entries_[k].stamp == now && entries_[k].image->bitmap())
    return entries_[k].image;
  // Stamped before reading: a file that changes while it is read is read again next time.
  Ref<cls_DrawImage> image = cls_DrawImage::read(toUtf16(full.string()));
  store(Entry{name, image, full.string(), now});
  return image;
}

Ref<cls_DrawImage> cls_DrawResources::ADD(Call, const std::u16string& pName, const Variant& pImage) {
  Ref<cls_DrawImage> image = cls_DrawToolImage::imageOf(pImage, false);
  if (image) store(Entry{pName, image, {}, {}});
  return image;
}

Ref<cls_DrawImage> cls_DrawResources::ITEM(Call, const std::u16string& pName) const {
  const size_t k = find(pName);
  if (k == npos) raise(rt::InvalidCall, toUtf8(pName));
  return entries_[k].image;
}

bool cls_DrawResources::EXISTS(Call, const std::u16string& pName) const { return find(pName) != npos; }

bool cls_DrawResources::REMOVE(Call, const std::u16string& pName) {
  const size_t k = find(pName);
  if (k == npos) return false;
  Ref<cls_DrawImage> gone = std::move(entries_[k].image);
  entries_.erase(entries_.begin() + static_cast<ptrdiff_t>(k));
  return true;
}

Ref<cls_DrawResources> cls_DrawResources::CLEAR(Call) {
  std::vector<Entry> old;
  old.swap(entries_);
  return Ref<cls_DrawResources>(this);
}

int32_t cls_DrawResources::count(Get) const { return static_cast<int32_t>(entries_.size()); }

Ref<cls_DrawNames> cls_DrawResources::NAMES(Get) const {
  std::vector<std::u16string> names;
  names.reserve(entries_.size());
  for (const Entry& e : entries_) names.push_back(e.name);
  return cls_DrawNames::of(std::move(names));
}

int32_t cls_DrawResources::LOADFOLDER(Call, const std::u16string& pFolder, const std::u16string& pPattern) {
  std::error_code ec;
  const fs::path folder(toUtf8(pFolder));
  if (!fs::is_directory(folder, ec)) raise(rt::PathNotFound, toUtf8(pFolder));
  const std::string pattern = toUtf8(pPattern);
  std::vector<fs::path> files;
  for (fs::directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec)) {
    std::error_code entryError;  // a dangling link is no file, not a failure of the folder
    if (it->is_regular_file(entryError) &&
        ::fnmatch(pattern.c_str(), it->path().filename().c_str(), FNM_PERIOD) == 0)
      files.push_back(it->path());
  }
  if (ec) raise(rt::PathFileAccess, toUtf8(pFolder));
  std::sort(files.begin(), files.end());

  // Everything is read before anything is stored, so a failure leaves the cache as it was.
  // A stray file that is no image (a README in a skin folder) is skipped, as is one that went
  // away since the folder was listed.
  std::vector<Entry> read;
  for (const fs::path& file : files) {
    try {
      read.push_back(Entry{toUtf16(file.stem().string()), cls_DrawImage::read(toUtf16(file.string())), {}, {}});
    } catch (const Error& e) {
      if (e.number() != rt::InvalidPicture && e.number() != rt::FileNotFound) throw;
    }
  }
  for (Entry& e : read) store(std::move(e));
  return static_cast<int32_t>(read.size());
}

}  // namespace tessel
