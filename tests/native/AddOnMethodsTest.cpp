#include "delivery/AddOnMethods.h"

#include <gtest/gtest.h>

#include <string>

#include "host/ReferenceHost.h"
#include "tests/fakes/FakeAddOnPlatform.h"
#include "tests/fakes/FakeDeliveryPlatform.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/fakes/FakeProductFiles.h"
#include "tests/fakes/FakeRegistry.h"
#include "tests/fakes/FakeSystem.h"

namespace SASM {
namespace {

constexpr char16_t kRoaming[] = u"C:\\Roaming";
constexpr char16_t kFolder[] = u"C:\\Roaming\\Halcyonics\\Lumen Player\\www.halcyonics.example\\bin\\LumenSample";
constexpr char16_t kExe[] =
    u"C:\\Roaming\\Halcyonics\\Lumen Player\\www.halcyonics.example\\bin\\LumenSample\\LumenSample.exe";
constexpr char kPackageUrl[] = "http://download.halcyonics.example/addons/LumenSample.pkg";
constexpr char kDigestUrl[] = "http://download.halcyonics.example/addons/digest.s";
constexpr int32_t kInvalid = AddOnMethods::kInvalidArgument;
constexpr int32_t kFailure = AddOnMethods::kFailure;

std::string Package(const std::string& product) {
  const auto size = static_cast<uint32_t>(product.size());
  return FakeSignedMessageVerifier::Sign(std::string("Troy") + static_cast<char>(size) + static_cast<char>(size >> 8) +
                                         static_cast<char>(size >> 16) + static_cast<char>(size >> 24) + "z:" + product);
}

std::string Digest(const std::string& product) {
  return FakeSignedMessageVerifier::Sign("<Reference URI=\"LumenSample.exe\" />\r\n<DigestValue>" +
                                         FakeDigestPlatform::ValueOf(product) + "</DigestValue>\r\n");
}

class AddOnMethodsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    system_.SetFolder(Csidl::kAppData, kRoaming);
    files_.directories = {u"C:", kRoaming};
    // The host names the kit's anchor, as the reference host does for the test suite.
    files_.files[u"C:\\kit\\anchor.der"] = "test anchor";
    http_.responses["download.halcyonics.example/addons/LumenSample.pkg"].body = Package("MZ sample");
    http_.responses["download.halcyonics.example/addons/digest.s"].body = Digest("MZ sample");
  }
  void TearDown() override { ByteBuffer::allocationCeiling = SIZE_MAX; }

  // Opens, reads to the end and closes under name; the close's result code.
  uint32_t Fetch(const char* url, const char16_t* name) {
    uint32_t cookie = 0;
    EXPECT_EQ(methods_.OpenDownload(url, cookie), AddOnMethods::kOk) << url;
    uint32_t position = 0;
    uint32_t length = 1;
    for (int reads = 0; position < length && reads < 100; ++reads)
      EXPECT_EQ(methods_.UpdateDownload(cookie, &position, &length), AddOnMethods::kOk);
    uint32_t code = 99;
    EXPECT_EQ(methods_.CloseDownload(cookie, name, &code), AddOnMethods::kOk);
    return code;
  }

  FakeRegistry registry_;
  FakeFileSystem fileSystem_;
  FakeSystem system_;
  FakeProductFiles files_;
  FakeSignedMessageVerifier verifier_;
  FakeDigestPlatform digest_;
  FakeUnpacker unpacker_;
  FakeHttpClient http_;
  FakeAddOnProcesses processes_;
  ReferenceHost host_{HostOptions{}, MString(u"Host { DownloadSettings \"C:\\kit\\anchor.der\"; };")};
  BrokerCookieTable cookies_;
  AddOnStore store_{Platform{&registry_, &fileSystem_, &system_},
                    DeliveryPlatform{&verifier_, &files_, &digest_, &unpacker_}};
  AddOnMethods methods_{cookies_, store_, http_, processes_, &host_};
};

TEST_F(AddOnMethodsTest, DownloadIsOneFixedRequestReadInBlocksOfAtMost64KiB) {
  http_.responses["cdn.halcyonics.example/big"].body = std::string(150000, 'b');
  uint32_t cookie = 0;
  ASSERT_EQ(methods_.OpenDownload("https://cdn.halcyonics.example/big", cookie), AddOnMethods::kOk);
  const IHttpClient::Request& sent = http_.sent.at(0);
  EXPECT_EQ(sent.host + sent.path, "cdn.halcyonics.example/big");
  EXPECT_STREQ(sent.version, "HTTP/1.0");
  EXPECT_EQ(sent.port, 443);
  EXPECT_EQ(sent.flags, 0x84800000u);

  uint32_t position = 0;
  uint32_t length = 0;
  std::vector<uint32_t> positions;
  while (position < 150000 && positions.size() < 10) {
    ASSERT_EQ(methods_.UpdateDownload(cookie, &position, &length), AddOnMethods::kOk);
    positions.push_back(position);
  }
  EXPECT_EQ(positions, (std::vector<uint32_t>{65536, 131072, 150000}));
  EXPECT_EQ(http_.readSizes, (std::vector<uint32_t>{65536, 65536, 18928}));

  ASSERT_EQ(methods_.OpenDownload(kPackageUrl, cookie), AddOnMethods::kOk);
  EXPECT_EQ(http_.sent.at(1).port, 80);
  EXPECT_EQ(http_.sent.at(1).flags, 0x84000000u);
}

TEST_F(AddOnMethodsTest, FailedOpenLeavesNoCookieAndNoHandles) {
  http_.responses["a.halcyonics.example/399"].status = 399;
  http_.responses["a.halcyonics.example/400"].status = 400;
  http_.responses["a.halcyonics.example/nolength"].hasLength = false;
  // A content length the process cannot allocate.
  http_.responses["a.halcyonics.example/huge"].length = 0xFFFFFFFF;
  ByteBuffer::allocationCeiling = 0x10000000;
  uint32_t cookie = 7;
  EXPECT_EQ(methods_.OpenDownload("http://a.halcyonics.example/399", cookie), AddOnMethods::kOk);
  const uint32_t kept = cookie;
  for (const char* url : std::initializer_list<const char*>{"http://a.halcyonics.example/400", "http://a.halcyonics.example/nolength",
                          "http://a.halcyonics.example/huge", "http://a.halcyonics.example/unanswered", nullptr}) {
    cookie = 7;
    EXPECT_EQ(methods_.OpenDownload(url, cookie), kFailure) << (url ? url : "null");
    EXPECT_EQ(cookie, 0u);
    EXPECT_EQ(cookies_.Head()->cookie, kept) << "only the good download keeps a cookie";
    EXPECT_EQ(cookies_.Head()->next, nullptr);
    EXPECT_EQ(http_.openRequests, 1);
  }
}

TEST_F(AddOnMethodsTest, UpdateChecksItsArgumentsAndShowsAStalledConnection) {
  uint32_t position = 0;
  uint32_t length = 0;
  EXPECT_EQ(methods_.UpdateDownload(42, &position, &length), kInvalid);
  http_.responses["download.halcyonics.example/addons/LumenSample.pkg"].deliverable = 10;
  uint32_t cookie = 0;
  ASSERT_EQ(methods_.OpenDownload(kPackageUrl, cookie), AddOnMethods::kOk);
  EXPECT_EQ(methods_.UpdateDownload(cookie, nullptr, &length), kInvalid);
  EXPECT_EQ(methods_.UpdateDownload(cookie, &position, nullptr), kInvalid);
  // A file cookie is no download.
  uint32_t fileCookie = 0;
  ASSERT_TRUE(cookies_.AddFileCookie(5, fileCookie, false, nullptr, nullptr));
  EXPECT_EQ(methods_.UpdateDownload(fileCookie, &position, &length), kInvalid);
  uint32_t code = 0;
  EXPECT_EQ(methods_.CloseDownload(fileCookie, nullptr, &code), kInvalid);

  // The connection stops after 10 bytes: reads go on succeeding, the position stays.
  for (int i = 0; i < 3; ++i) ASSERT_EQ(methods_.UpdateDownload(cookie, &position, &length), AddOnMethods::kOk);
  EXPECT_EQ(position, 10u);
  http_.responses["x.halcyonics.example/fail"].failReads = true;
  uint32_t failing = 0;
  ASSERT_EQ(methods_.OpenDownload("http://x.halcyonics.example/fail", failing), AddOnMethods::kOk);
  EXPECT_EQ(methods_.UpdateDownload(failing, &position, &length), kFailure);
}

TEST_F(AddOnMethodsTest, CloseCodesForNamesAndUnfinishedDownloads) {
  verifier_.trustedAnchor = "test anchor";
  EXPECT_EQ(Fetch(kDigestUrl, u"DIGEST#Lumen.Sample"), AddOnResult::kRefused);
  EXPECT_EQ(Fetch(kPackageUrl, u"Lumen.Sample"), AddOnResult::kFailed);
  EXPECT_EQ(Fetch(kPackageUrl, u"DIGEST"), AddOnResult::kStored);  // a plain name that only looks like the mark

  // Abandoned: code 0, nothing stored, the cookie gone.
  uint32_t cookie = 0;
  ASSERT_EQ(methods_.OpenDownload(kPackageUrl, cookie), AddOnMethods::kOk);
  uint32_t code = 99;
  EXPECT_EQ(methods_.CloseDownload(cookie, nullptr, &code), AddOnMethods::kOk);
  EXPECT_EQ(code, 0u);
  uint32_t position = 0;
  uint32_t length = 0;
  EXPECT_EQ(methods_.UpdateDownload(cookie, &position, &length), kInvalid);
  EXPECT_EQ(methods_.CloseDownload(cookie, nullptr, &code), kInvalid);

  // Closed before the end: the whole, partly empty buffer goes to the check.
  ASSERT_EQ(methods_.OpenDownload(kPackageUrl, cookie), AddOnMethods::kOk);
  EXPECT_EQ(methods_.CloseDownload(cookie, u"LumenSample", &code), AddOnMethods::kOk);
  EXPECT_EQ(code, AddOnResult::kRefused);
  EXPECT_EQ(files_.files.count(kExe), 0u);
  EXPECT_EQ(methods_.CloseDownload(cookie, u"LumenSample", nullptr), kInvalid);
}

TEST_F(AddOnMethodsTest, LaunchAndVersionOnlyForAProductWhoseDigestHolds) {
  verifier_.trustedAnchor = "test anchor";
  uint32_t ms = 0;
  uint32_t ls = 0;
  EXPECT_EQ(methods_.GetVersion(u"LumenSample", &ms, &ls), kFailure);  // nothing stored
  ASSERT_EQ(Fetch(kPackageUrl, u"LumenSample"), AddOnResult::kStored);
  EXPECT_EQ(methods_.Launch(u"LumenSample", u"-x"), kFailure);  // no digest yet
  ASSERT_EQ(Fetch(kDigestUrl, u"DIGEST#LumenSample"), AddOnResult::kStored);
  // Both checked under the anchor the host names, every request closed and every cookie gone.
  EXPECT_EQ(verifier_.lastAnchor, "test anchor");
  EXPECT_EQ(http_.openRequests, 0);
  EXPECT_EQ(cookies_.Head(), nullptr);

  EXPECT_EQ(methods_.Launch(u"LumenSample", u"LumenSample.exe -play"), AddOnMethods::kOk);
  EXPECT_EQ(methods_.GetVersion(u"LumenSample", &ms, &ls), AddOnMethods::kOk);
  EXPECT_EQ(ms, 0x00030001u);
  EXPECT_EQ(ls, 0x0004000Fu);
  ASSERT_EQ(processes_.starts.size(), 1u);
  EXPECT_EQ(processes_.starts[0].path, kExe);
  EXPECT_EQ(processes_.starts[0].parameters, u"LumenSample.exe -play");

  // Elevation is asked for: the shell starts it without parameters; any other error fails.
  processes_.startErrors = {740, 740, 2};
  EXPECT_EQ(methods_.Launch(u"LumenSample", u"-x"), AddOnMethods::kOk);
  EXPECT_TRUE(processes_.starts.back().elevated);
  EXPECT_EQ(processes_.starts.back().parameters, u"");
  processes_.elevatedWorks = false;
  EXPECT_EQ(methods_.Launch(u"LumenSample", u"-x"), kFailure);
  EXPECT_EQ(methods_.Launch(u"LumenSample", u"-x"), kFailure);

  // One changed byte: neither started nor asked.
  files_.files[kExe][0] = 'N';
  const size_t starts = processes_.starts.size();
  EXPECT_EQ(methods_.Launch(u"LumenSample", nullptr), kFailure);
  EXPECT_EQ(methods_.GetVersion(u"LumenSample", &ms, &ls), kFailure);
  EXPECT_EQ(processes_.starts.size(), starts);

  EXPECT_EQ(methods_.Launch(nullptr, nullptr), kInvalid);
  EXPECT_EQ(methods_.Launch(u"..\\x", nullptr), kFailure);
  EXPECT_EQ(methods_.GetVersion(u"LumenSample", nullptr, &ls), kInvalid);
  EXPECT_EQ(methods_.GetVersion(nullptr, &ms, &ls), kInvalid);
}

TEST_F(AddOnMethodsTest, RunningProbeLowerCasesTheName) {
  processes_.heldMutexes = {"HalcyonicsMutexGammaabc"};
  EXPECT_EQ(methods_.IsRunning(u"ABC"), AddOnMethods::kOk);
  EXPECT_EQ(methods_.IsRunning(u"abc"), AddOnMethods::kOk);
  EXPECT_EQ(methods_.IsRunning(u"abd"), AddOnMethods::kNotRunning);
  EXPECT_EQ(processes_.probes, (std::vector<std::string>{"HalcyonicsMutexGammaabc", "HalcyonicsMutexGammaabc",
                                                         "HalcyonicsMutexGammaabd"}));
  EXPECT_EQ(methods_.IsRunning(nullptr), kInvalid);
  EXPECT_EQ(methods_.IsRunning(u"a-b"), kInvalid);
}

}  // namespace
}  // namespace SASM
