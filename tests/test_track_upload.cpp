// The track upload of displayupdate and displayvisualupdate.
#include "support/harness.h"

using namespace kt;

TEST_F(KalvorTest, UploadWithNoActiveTrackIsTheHeaderThenTheFullPreview) {
  displayinittrack(2);
  displayupdate(2);
  auto sent = rec.all();
  ASSERT_EQ(sent.size(), 2u);
  EXPECT_EQ(sent[0].bytes, (Bytes{0x01, 0x00, 0x00}));
  EXPECT_TRUE(sent[0].reply);
  EXPECT_EQ(sent[1].bytes, (Bytes{0x7B}));
  EXPECT_TRUE(sent[1].reply);
  EXPECT_EQ(sent[0].scanner, 2u);
  EXPECT_EQ(sent[1].scanner, 2u);

  rec.clear();
  displayvisualupdate(2);
  EXPECT_EQ(rec.at(0).bytes, (Bytes{0x16, 0x00, 0x00}));
}

TEST_F(KalvorTest, UploadReturnsTheWaitValueOfTheAnswer) {
  // Preview answer: point count 0, wait value 0x01020304.
  rec.set_reply(0x01, {0x00, 0x00, 0x04, 0x03, 0x02, 0x01});
  EXPECT_EQ(displayupdate(1), 0x01020304u);
  rec.set_reply(0x01, {});
  // The value stays in the preview buffer for later uploads that get no answer.
  rec.set_reply(0x16, {0x00, 0x00, 0x09, 0x00, 0x00, 0x00});
  EXPECT_EQ(displayvisualupdate(1), 9u);
  DisplayExit();
  EXPECT_EQ(displayupdate(1), 9u);
  DisplayInit();
  EXPECT_EQ(displayupdate(1), 0u);  // records were initialised again
}
