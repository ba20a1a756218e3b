#include <tessel/host/DataObject.h>

namespace tessel {

std::u16string DataObject::Text(Get) const { return text_; }
void DataObject::Text(Let, const std::u16string& RHS) { text_ = RHS; }
int32_t DataObject::FileCount(Get) const { return static_cast<int32_t>(files_.size()); }

std::u16string DataObject::Files(Get, int32_t pIndex) const {
  if (pIndex < 1 || pIndex > FileCount()) raise(rt::SubscriptOutOfRange);
  return files_[static_cast<size_t>(pIndex - 1)];
}

void DataObject::AddFile(Call, const std::u16string& pFile) { files_.push_back(pFile); }

void DataObject::Clear(Call) {
  text_.clear();
  files_.clear();
}

bool DataObject::GetFormat(Call, int16_t pFormat) const {
  if (pFormat == kFormatText) return !text_.empty();
  if (pFormat == kFormatFiles) return !files_.empty();
  return false;
}

}  // namespace tessel
