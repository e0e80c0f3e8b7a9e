#include <gtest/gtest.h>

#include <vector>

#include "broker/MMNotificationClient.h"
#include "tests/fakes/FakeAudioPlatform.h"

using namespace SASM;

namespace {

using Handles = std::vector<AudioPlatform::Handle>;
constexpr AudioPlatform::Handle kPlayerProcess = 0x44;
constexpr AudioPlatform::Handle kPlayerEvent = 0x88;

class MMNotificationClientTest : public ::testing::Test {
 protected:
  // A registered client with both events set.
  MMNotificationClient* Client() {
    auto* client = new MMNotificationClient(audio_, kPlayerProcess);
    EXPECT_TRUE(client->SetDefaultDeviceChangeEvent(kPlayerEvent));
    EXPECT_TRUE(client->SetDeviceStateChangeEvent(kPlayerEvent + 4));
    return client;
  }

  FakeAudioPlatform audio_;
};

TEST_F(MMNotificationClientTest, RegistersAtConstructionSilentlyOrNotAndShutsDownAtTheLastRelease) {
  MMNotificationClient* client = Client();
  EXPECT_EQ(audio_.registered, std::vector<MMNotificationClient*>{client});
  audio_.registrationFails = true;
  auto* refused = new MMNotificationClient(audio_, kPlayerProcess);
  EXPECT_FALSE(refused->registered);
  audio_.enumeratorFails = true;
  auto* alone = new MMNotificationClient(audio_, kPlayerProcess);
  EXPECT_FALSE(alone->registered);
  EXPECT_EQ(alone->OnDeviceStateChanged(u"speakers", 1), 0);

  EXPECT_EQ(client->AddRef(), 2u);
  EXPECT_EQ(client->Release(), 1u);
  EXPECT_EQ(audio_.openHandles.size(), 2u);
  for (MMNotificationClient* each : {client, refused, alone}) EXPECT_EQ(each->Release(), 0u);
  EXPECT_TRUE(audio_.registered.empty());
  EXPECT_TRUE(audio_.openHandles.empty());
  EXPECT_EQ(audio_.enumeratorsAlive, 0);
}

TEST_F(MMNotificationClientTest, DefaultRenderChangesAlwaysSignalAndCaptureOnlyInTheMultimediaRole) {
  MMNotificationClient* client = Client();
  const AudioPlatform::Handle defaultEvent = client->defaultDeviceChangeEvent;
  struct Case {
    uint32_t flow, role;
    bool signals;
  };
  for (Case c : {Case{0, 0, true}, Case{0, 2, true}, Case{1, 0, false}, Case{1, 1, true}, Case{1, 2, false},
                 Case{2, 0, false}, Case{2, 1, true}}) {
    audio_.signalled.clear();
    audio_.FireDefaultDeviceChanged(c.flow, c.role);
    EXPECT_EQ(audio_.signalled, c.signals ? Handles{defaultEvent} : Handles{}) << c.flow << "/" << c.role;
  }
  client->Release();

  // With no event set the null goes to the platform, which fails harmlessly.
  auto* bare = new MMNotificationClient(audio_, kPlayerProcess);
  audio_.signalled.clear();
  audio_.FireDefaultDeviceChanged(0, 0);
  EXPECT_EQ(audio_.signalled, Handles{0});
  bare->Release();
}

TEST_F(MMNotificationClientTest, StateChangesSignalOnlyForRenderEndpoints) {
  audio_.devices = {{u"speakers", 0}, {u"microphone", 1}};
  MMNotificationClient* client = Client();
  audio_.FireDeviceStateChanged(u"microphone");
  audio_.FireDeviceStateChanged(u"unplugged");
  EXPECT_EQ(client->OnDeviceAdded(u"speakers") | client->OnDeviceRemoved(u"speakers") |
                client->OnPropertyValueChanged(u"speakers", ClassId{}, 2),
            0);
  EXPECT_TRUE(audio_.signalled.empty());
  audio_.FireDeviceStateChanged(u"speakers");
  EXPECT_EQ(audio_.signalled, Handles{client->deviceStateChangeEvent});
  client->Release();
}

TEST_F(MMNotificationClientTest, SettingAnEventDuplicatesItAndClosesTheOneItReplaces) {
  MMNotificationClient* client = Client();
  const AudioPlatform::Handle first = client->defaultDeviceChangeEvent;
  EXPECT_TRUE(client->SetDefaultDeviceChangeEvent(kPlayerEvent));
  EXPECT_NE(client->defaultDeviceChangeEvent, first);
  EXPECT_EQ(audio_.closed, Handles{first});

  // A null event or one that can't be duplicated leaves the client as it was.
  const AudioPlatform::Handle held = client->defaultDeviceChangeEvent;
  EXPECT_FALSE(client->SetDefaultDeviceChangeEvent(0));
  audio_.deadProcess = kPlayerProcess;
  EXPECT_FALSE(client->SetDefaultDeviceChangeEvent(kPlayerEvent));
  EXPECT_EQ(client->defaultDeviceChangeEvent, held);
  EXPECT_EQ(audio_.closed.size(), 1u);
  client->Release();
}

}  // namespace
