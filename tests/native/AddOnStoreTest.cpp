#include "delivery/AddOnStore.h"

#include <gtest/gtest.h>

#include <string>

#include "delivery/AddOnAnchor.h"
#include "tests/fakes/FakeDeliveryPlatform.h"
#include "tests/fakes/FakeFileSystem.h"
#include "tests/fakes/FakeProductFiles.h"
#include "tests/fakes/FakeRegistry.h"
#include "tests/fakes/FakeSystem.h"

namespace SASM {
namespace {

constexpr char16_t kRoaming[] = u"C:\\Users\\tester\\AppData\\Roaming";
constexpr char16_t kFolder[] =
    u"C:\\Users\\tester\\AppData\\Roaming\\Halcyonics\\Lumen Player\\www.halcyonics.example\\bin\\LumenSample";
constexpr char16_t kExe[] =
    u"C:\\Users\\tester\\AppData\\Roaming\\Halcyonics\\Lumen Player\\www.halcyonics.example\\bin\\LumenSample"
    u"\\LumenSample.exe";
constexpr char16_t kAnchorFile[] = u"C:\\kit\\anchor.der";

std::string Le32(uint32_t value) {
  return {static_cast<char>(value), static_cast<char>(value >> 8), static_cast<char>(value >> 16),
          static_cast<char>(value >> 24)};
}

// A package's content: magic, declared size and a fake stream of the product's bytes.
std::string Package(const std::string& product, const char* magic = "Troy") {
  return std::string(magic) + Le32(static_cast<uint32_t>(product.size())) + "z:" + product;
}

std::string Digest(const std::string& references, const std::string& value) {
  return "<SignedInfo>\r\n" + references + "<DigestValue>" + value + "</DigestValue>\r\n</SignedInfo>\r\n";
}

class AddOnStoreTest : public ::testing::Test {
 protected:
  void SetUp() override {
    system_.SetFolder(Csidl::kAppData, kRoaming);
    for (const char16_t* folder : {u"C:", u"C:\\Users", u"C:\\Users\\tester", u"C:\\Users\\tester\\AppData", kRoaming})
      files_.directories.insert(folder);
    ByteBuffer builtIn;
    AddOnAnchor::LoadBuiltInAnchor(builtIn);
    verifier_.trustedAnchor.assign(reinterpret_cast<const char*>(builtIn.data()), builtIn.size());
  }
  void TearDown() override { ByteBuffer::allocationCeiling = SIZE_MAX; }

  uint32_t Install(const std::string& message, const char16_t* name = u"LumenSample",
                   std::u16string_view overridePath = u"") {
    return store_.InstallSignedPackage(name, reinterpret_cast<const uint8_t*>(message.data()),
                                       static_cast<uint32_t>(message.size()), overridePath);
  }
  uint32_t StoreDigest(const std::string& message, const char16_t* name = u"LumenSample") {
    return store_.StoreProductDigest(name, reinterpret_cast<const uint8_t*>(message.data()),
                                     static_cast<uint32_t>(message.size()));
  }
  // The product stored the way a client stores it: package, then digest.
  void StoreProduct(const std::string& exe, const std::string& digestText) {
    ASSERT_EQ(Install(FakeSignedMessageVerifier::Sign(Package(exe))), AddOnResult::kStored);
    ASSERT_EQ(StoreDigest(FakeSignedMessageVerifier::Sign(digestText)), AddOnResult::kStored);
  }
  bool Verify() { return store_.VerifyProductDigest(u"LumenSample", u"", ProductFolders::kPerUser); }
  bool ExeExists() const { return files_.files.count(kExe) > 0; }

  FakeRegistry registry_;
  FakeFileSystem fileSystem_;
  FakeSystem system_;
  FakeProductFiles files_;
  FakeSignedMessageVerifier verifier_;
  FakeDigestPlatform digest_;
  FakeUnpacker unpacker_;
  AddOnStore store_{Platform{&registry_, &fileSystem_, &system_}, DeliveryPlatform{&verifier_, &files_, &digest_, &unpacker_}};
};

TEST_F(AddOnStoreTest, GoodPackageIsUnpackedIntoFoldersMadeForIt) {
  EXPECT_EQ(Install(FakeSignedMessageVerifier::Sign(Package("MZ product bytes"))), AddOnResult::kStored);
  EXPECT_EQ(files_.files.at(kExe), "MZ product bytes");
  EXPECT_EQ(files_.OpenHandles(), 0u);
}

TEST_F(AddOnStoreTest, RefusedPackagesGiveTheirCodeAndLeaveNoFile) {
  const std::string product(100, 'p');
  const std::string good = Package(product);
  std::string bound = good;  // declares ten times its content's size
  bound.replace(4, 4, Le32(static_cast<uint32_t>(10 * good.size())));
  std::string corrupt = good;
  corrupt[8] = 'Y';
  struct Case {
    const char* what;
    std::string message;
    uint32_t code;
  } cases[] = {
      {"unsigned", good, AddOnResult::kRefused},
      {"wrong magic", FakeSignedMessageVerifier::Sign(Package(product, "Tray")), AddOnResult::kRefused},
      {"too short for magic", FakeSignedMessageVerifier::Sign("Tro"), AddOnResult::kRefused},
      {"no size field", FakeSignedMessageVerifier::Sign("Troy12"), AddOnResult::kFailed},
      {"bound reached", FakeSignedMessageVerifier::Sign(bound), AddOnResult::kFailed},
      {"corrupt stream", FakeSignedMessageVerifier::Sign(corrupt), AddOnResult::kFailed},
  };
  for (const Case& c : cases) {
    files_.created.clear();
    EXPECT_EQ(Install(c.message), c.code) << c.what;
    // Created before the check, gone after it.
    EXPECT_EQ(files_.created, std::vector<std::u16string>{kExe}) << c.what;
    EXPECT_FALSE(ExeExists()) << c.what;
  }
}

TEST_F(AddOnStoreTest, BoundIsTenTimesTheSignedContent) {
  const std::string product(10, 'p');
  std::string edge = Package(product);
  // One byte under the bound: the size is accepted and the stream decides.
  edge.replace(4, 4, Le32(static_cast<uint32_t>(10 * edge.size() - 1)));
  EXPECT_EQ(Install(FakeSignedMessageVerifier::Sign(edge)), AddOnResult::kStored);
  EXPECT_EQ(files_.files.at(kExe), product);

  // A declared size near 4 GiB is compared, not wrapped.
  std::string huge = Package(product);
  huge.replace(4, 4, Le32(0xFFFFFFFFu));
  EXPECT_EQ(Install(FakeSignedMessageVerifier::Sign(huge)), AddOnResult::kFailed);
}

TEST_F(AddOnStoreTest, StorageFailuresGiveTheirCodes) {
  const std::string message = FakeSignedMessageVerifier::Sign(Package("MZ"));
  EXPECT_EQ(Install(message, u"Lumen-Sample"), AddOnResult::kFailed);
  EXPECT_EQ(Install(message, nullptr), AddOnResult::kFailed);
  EXPECT_TRUE(files_.created.empty());

  files_.refuseCreate.insert(kExe);
  EXPECT_EQ(Install(message), AddOnResult::kFailed);
  files_.refuseCreate.clear();

  files_.writeLimit = 1;
  EXPECT_EQ(Install(message), AddOnResult::kFailed);
  EXPECT_FALSE(ExeExists());
  files_.writeLimit = UINT32_MAX;

  // Room for the anchor and the content, none for the declared unpacked size.
  std::string large = Package(std::string(1000, 'p'));
  large.replace(4, 4, Le32(5000));
  ByteBuffer::allocationCeiling = 4000;
  EXPECT_EQ(Install(FakeSignedMessageVerifier::Sign(large)), AddOnResult::kNoMemory);
  EXPECT_FALSE(ExeExists());
}

TEST_F(AddOnStoreTest, OverridePathNamesTheAnchorFile) {
  const std::string message = FakeSignedMessageVerifier::Sign(Package("MZ"));
  verifier_.trustedAnchor = "test anchor";
  files_.files[kAnchorFile] = "test anchor";
  EXPECT_EQ(Install(message, u"LumenSample", kAnchorFile), AddOnResult::kStored);
  // The built-in anchor is not the test's, and a missing override is no anchor at all.
  EXPECT_EQ(Install(message), AddOnResult::kRefused);
  const int calls = verifier_.calls;
  EXPECT_EQ(Install(message, u"LumenSample", u"C:\\kit\\missing.der"), AddOnResult::kRefused);
  EXPECT_EQ(verifier_.calls, calls);
  EXPECT_FALSE(ExeExists());
}

TEST_F(AddOnStoreTest, DigestIsStoredUncheckedBesideThePackage) {
  EXPECT_EQ(StoreDigest("anything"), AddOnResult::kFailed);  // no folder yet
  EXPECT_EQ(StoreDigest("anything", u"a.b"), AddOnResult::kRefused);
  EXPECT_EQ(StoreDigest("anything", nullptr), AddOnResult::kRefused);
  ASSERT_EQ(Install(FakeSignedMessageVerifier::Sign(Package("MZ"))), AddOnResult::kStored);
  EXPECT_EQ(StoreDigest("anything"), AddOnResult::kStored);
  EXPECT_EQ(files_.files.at(std::u16string(kFolder) + u"\\digest.s"), "anything");
  files_.writeLimit = 3;
  EXPECT_EQ(StoreDigest("anything"), AddOnResult::kFailed);
}

TEST_F(AddOnStoreTest, ProductPassesOnlyWhenItsListedFilesHashToTheValue) {
  const std::string exe = "MZ" + std::string(150000, 'x');  // more than two hash blocks
  const std::string cfg = "volume=7";
  files_.files[std::u16string(kFolder) + u"\\LumenSample.cfg"] = cfg;
  const std::string refs = "<Reference URI=\"LumenSample.exe\" />\r\n<Reference URI=\"LumenSample.cfg\" />\r\n";
  StoreProduct(exe, Digest(refs, FakeDigestPlatform::ValueOf(exe + cfg)));
  EXPECT_TRUE(Verify());
  EXPECT_EQ(files_.LargestRead(), AddOnStore::kHashBlock);
  EXPECT_EQ(files_.OpenHandles(), 0u);

  // One changed byte of a listed file.
  files_.files[std::u16string(kFolder) + u"\\LumenSample.cfg"] = "volume=8";
  EXPECT_FALSE(Verify());
  // A listed file gone.
  files_.files.erase(std::u16string(kFolder) + u"\\LumenSample.cfg");
  EXPECT_FALSE(Verify());
}

TEST_F(AddOnStoreTest, ListOrderAndTheExecutableEntryMatter) {
  const std::string exe = "MZ exe";
  const std::string cfg = "cfg";
  files_.files[std::u16string(kFolder) + u"\\LumenSample.cfg"] = cfg;
  const std::string exeRef = "<Reference URI=\"LumenSample.exe\" />\r\n";
  const std::string cfgRef = "<Reference URI=\"LumenSample.cfg\" />\r\n";
  // Reordered: the same files, another hash.
  StoreProduct(exe, Digest(cfgRef + exeRef, FakeDigestPlatform::ValueOf(exe + cfg)));
  EXPECT_FALSE(Verify());
  // Without the executable listed, the right hash is not enough.
  StoreProduct(exe, Digest(cfgRef, FakeDigestPlatform::ValueOf(cfg)));
  EXPECT_FALSE(Verify());
  // A reference that only begins the executable's name counts as it; the missing file adds nothing.
  StoreProduct(exe, Digest("<Reference URI=\"Lumen\" />\r\n" + cfgRef, FakeDigestPlatform::ValueOf(cfg)));
  EXPECT_TRUE(Verify());
  // A missing file passes only when the digest was made without it.
  StoreProduct(exe, Digest(exeRef + "<Reference URI=\"gone.dat\" />\r\n", FakeDigestPlatform::ValueOf(exe)));
  EXPECT_TRUE(Verify());
}

TEST_F(AddOnStoreTest, DigestThatCannotBeReadOrTrustedFailsVerification) {
  const std::string exe = "MZ exe";
  const std::string refs = "<Reference URI=\"LumenSample.exe\" />\r\n";
  EXPECT_FALSE(Verify());  // nothing stored
  ASSERT_EQ(Install(FakeSignedMessageVerifier::Sign(Package(exe))), AddOnResult::kStored);
  EXPECT_FALSE(Verify());  // no digest.s
  ASSERT_EQ(StoreDigest(Digest(refs, FakeDigestPlatform::ValueOf(exe))), AddOnResult::kStored);
  EXPECT_FALSE(Verify());  // not signed
  // Bare LF ends: no references.
  StoreProduct(exe, "<Reference URI=\"LumenSample.exe\" />\n<DigestValue>" + FakeDigestPlatform::ValueOf(exe) +
                        "</DigestValue>\n");
  EXPECT_FALSE(Verify());
  StoreProduct(exe, Digest(refs, FakeDigestPlatform::ValueOf(exe)));
  EXPECT_TRUE(Verify());
  digest_.failBegin = true;
  EXPECT_FALSE(Verify());
  digest_.failBegin = false;

  ByteBuffer text;
  ASSERT_TRUE(store_.LoadProductDigest(u"LumenSample", text, u"", ProductFolders::kPerUser));
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(text.data()), text.size()),
            Digest(refs, FakeDigestPlatform::ValueOf(exe)) + std::string(1, '\0'));
}

TEST_F(AddOnStoreTest, MachineFolderJoinsItsPiecesAsTheyStand) {
  system_.SetFolder(Csidl::kProgramFiles, u"C:\\Program Files");
  std::u16string path;
  ASSERT_TRUE(store_.Folders().ExecutablePath(u"LumenSample", ProductFolders::kMachine, path));
  EXPECT_EQ(path, u"C:\\Program Files\\Corva\\\\Lumen Player\\\\AddIns\\LumenSample\\LumenSample.exe");
}

}  // namespace
}  // namespace SASM
