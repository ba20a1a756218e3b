// The data of a drag and drop: what it holds by format, and its file list's bounds.
#include <tessel/host/DataObject.h>

#include <gtest/gtest.h>

#include "TestSupport.h"

using namespace tessel;

TEST(DataObject, AnswersByFormatWhatItHolds) {
  auto data = make<DataObject>();
  EXPECT_FALSE(data->GetFormat(DataObject::kFormatText) || data->GetFormat(DataObject::kFormatFiles));
  data->Text(u"x");
  data->AddFile(u"/a");
  data->AddFile(u"/b");
  EXPECT_TRUE(data->GetFormat(1) && data->GetFormat(15));
  EXPECT_FALSE(data->GetFormat(2));
  EXPECT_EQ(data->Files(2), u"/b");
  for (int32_t bad : {0, 3}) EXPECT_EQ(raisedNumber([&] { data->Files(bad); }), objectError(9));
  data->Clear();
  EXPECT_EQ(data->FileCount(), 0);
  EXPECT_EQ(data->Text(), u"");
}
