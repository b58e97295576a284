#include <cstdint>
#include <memory>

#include <speech/audio.h>
#include "tests/engines/local/local_engine_test.h"

namespace speech::test {
namespace {

using ::testing::ElementsAre;

struct ExternFreer {
  void operator()(unsigned char* memory) const { ExternFree(memory); }
};
using Samples = std::unique_ptr<unsigned char, ExternFreer>;

using LocalBuffer = LocalEngineTest;

TEST_F(LocalBuffer, TheHostGetsACopyWithOneMoreZeroByte) {
  recording().audio = {1, 2, 3, 4};
  unsigned char* out = nullptr;
  ASSERT_EQ(engine_->synthesizeToBuffer(L"x", false, &out), 4);
  const Samples samples(out);
  EXPECT_EQ(std::vector<unsigned char>(out, out + 5), (std::vector<unsigned char>{1, 2, 3, 4, 0}));
  EXPECT_FALSE(engine_->isSpeaking());
  EXPECT_EQ(engine_->synthesizeToBuffer(L"x", true, nullptr), 4) << "without a place for the copy";
  EXPECT_THAT(recording().takeCalls(),
              ElementsAre("LXAPI_SetOutputBuffer(1, 0)", "LXAPI_BufferOpen(1, \"x\", -1, 2, 0)",
                          "LXAPI_GetBuffer(1, buffer)", "LXAPI_FreeBuffer(buffer)", "LXAPI_BufferClose(1)",
                          "LXAPI_SetOutputBuffer(1, 0)", "LXAPI_BufferOpen(1, \"x\", -1, 130, 0)",
                          "LXAPI_GetBuffer(1, buffer)", "LXAPI_FreeBuffer(buffer)", "LXAPI_BufferClose(1)"));
}

TEST_F(LocalBuffer, ARefusalReadsNoBuffer) {
  recording().answer("LXAPI_BufferOpen", -4);
  unsigned char untouched = 0;
  unsigned char* out = &untouched;
  EXPECT_EQ(engine_->synthesizeToBuffer(L"x", false, &out), 0);
  EXPECT_EQ(out, &untouched);
  EXPECT_THAT(recording().takeCalls(),
              ElementsAre("LXAPI_SetOutputBuffer(1, 0)", "LXAPI_BufferOpen(1, \"x\", -1, 2, 0)"));
}

TEST_F(LocalBuffer, SilenceIsAOneByteBlock) {
  unsigned char* out = nullptr;
  EXPECT_EQ(engine_->synthesizeToBuffer(L"", false, &out), 0);
  const Samples samples(out);
  ASSERT_NE(out, nullptr);
  EXPECT_EQ(*out, 0);
}

TEST_F(LocalBuffer, SizesThatCannotBeCopiedCountAsARefusal) {
  for (const std::int32_t size : {-1, INT32_MAX}) {
    recording().answer("LXAPI_GetBuffer", size);
    recording().takeCalls();
    unsigned char* out = nullptr;
    EXPECT_EQ(engine_->synthesizeToBuffer(L"x", false, &out), 0) << size;
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(recording().takeCalls().back(), "LXAPI_BufferClose(1)");
  }
}

}  // namespace
}  // namespace speech::test
