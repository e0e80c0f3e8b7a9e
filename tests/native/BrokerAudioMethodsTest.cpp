#include <gtest/gtest.h>

#include <optional>

#include "broker/BrokerAudioMethods.h"
#include "tests/fakes/FakeAudioPlatform.h"

using namespace SASM;

namespace {

constexpr AudioPlatform::Handle kPlayerProcess = 0x44;
constexpr AudioPlatform::Handle kPlayerEvent = 0x88;

class BrokerAudioMethodsTest : public ::testing::Test {
 protected:
  BrokerAudioMethods::Cookie Create() {
    BrokerAudioMethods::Cookie cookie = 0;
    EXPECT_EQ(methods_->Create(kPlayerProcess, &cookie), 0);
    return cookie;
  }

  FakeAudioPlatform audio_;
  std::optional<BrokerAudioMethods> methods_{std::in_place, audio_};
};

TEST_F(BrokerAudioMethodsTest, TheCookieIsTheClientsAddressAndAnythingElseAnswersOne) {
  const BrokerAudioMethods::Cookie cookie = Create();
  EXPECT_EQ(reinterpret_cast<MMNotificationClient*>(cookie), audio_.registered.at(0));
  EXPECT_EQ(methods_->Create(kPlayerProcess, nullptr), 0);
  EXPECT_EQ(methods_->Count(), 2u);

  EXPECT_EQ(methods_->SetDefaultDeviceChangeEvent(cookie, kPlayerEvent), 0);
  EXPECT_EQ(methods_->SetDeviceStateChangeEvent(cookie, 0), 1);
  EXPECT_EQ(methods_->SetDefaultDeviceChangeEvent(cookie + 8, kPlayerEvent), 1);
  EXPECT_EQ(methods_->Destroy(cookie + 8), 1);
  EXPECT_EQ(audio_.openHandles.size(), 1u);
}

TEST_F(BrokerAudioMethodsTest, DestroyReleasesOnceAndKeepsTheEntrySoASecondCallStillAnswersZero) {
  const BrokerAudioMethods::Cookie cookie = Create();
  methods_->SetDefaultDeviceChangeEvent(cookie, kPlayerEvent);
  EXPECT_EQ(methods_->Destroy(cookie), 0);
  EXPECT_TRUE(audio_.registered.empty());
  EXPECT_TRUE(audio_.openHandles.empty());
  EXPECT_EQ(methods_->Count(), 1u);

  // The listed address no longer names a client: nothing is released or touched again.
  EXPECT_EQ(methods_->Destroy(cookie), 0);
  EXPECT_EQ(methods_->SetDefaultDeviceChangeEvent(cookie, kPlayerEvent), 1);
  EXPECT_TRUE(audio_.openHandles.empty());
}

TEST_F(BrokerAudioMethodsTest, TheBrokerObjectsEndReleasesTheClientsStillHeld) {
  const BrokerAudioMethods::Cookie gone = Create();
  const BrokerAudioMethods::Cookie kept = Create();
  methods_->SetDeviceStateChangeEvent(kept, kPlayerEvent);
  methods_->Destroy(gone);
  methods_.reset();
  EXPECT_TRUE(audio_.registered.empty());
  EXPECT_TRUE(audio_.openHandles.empty());
  EXPECT_EQ(audio_.enumeratorsAlive, 0);
}

}  // namespace
