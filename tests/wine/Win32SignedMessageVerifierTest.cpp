// The signed-message check over the platform, with the messages of the add-on
// signing kit that the build makes beside the suite.
#include "delivery/win32/Win32SignedMessageVerifier.h"

#include "engine/win32/WindowsApi.h"

#include <wincrypt.h>

#include <gtest/gtest.h>

#include <string>

#include "delivery/AddOnAnchor.h"
#include "delivery/win32/Win32ProductFiles.h"
#include "engine/win32/WideText.h"
#include "tests/wine/WineTestSupport.h"

namespace SASM::WineTest {
namespace {

std::wstring KitFile(const wchar_t* name) { return BinaryDirectory() + L"\\addon-kit\\" + name; }

struct Verdict {
  bool passed;
  std::string content;
};

Verdict Verify(const wchar_t* messageName, const std::string& anchor) {
  const std::string message = ReadAll(KitFile(messageName));
  ByteBuffer content;
  const bool passed = Win32SignedMessageVerifier().VerifySignedMessage(
      reinterpret_cast<const uint8_t*>(message.data()), static_cast<uint32_t>(message.size()), content,
      reinterpret_cast<const uint8_t*>(anchor.data()), static_cast<uint32_t>(anchor.size()));
  return {passed, std::string(reinterpret_cast<const char*>(content.data()), content.size())};
}

class SignedMessageTest : public ::testing::Test {
 protected:
  void SetUp() override {
    anchor_ = ReadAll(KitFile(L"anchor.der"));
    content_ = ReadAll(KitFile(L"content.bin"));
    ASSERT_FALSE(anchor_.empty()) << "the add-on signing kit is missing";
    ASSERT_FALSE(content_.empty());
  }
  std::string anchor_;
  std::string content_;
};

TEST_F(SignedMessageTest, ChainsUpToTheAnchorHandOutTheContent) {
  // Two links, eight links, and a chain whose carried top is the anchor itself.
  for (const wchar_t* name : {L"msg-good.p7", L"msg-chain8.p7", L"msg-carries-anchor.p7"}) {
    const Verdict verdict = Verify(name, anchor_);
    EXPECT_TRUE(verdict.passed) << Utf8(name);
    EXPECT_EQ(verdict.content, content_) << Utf8(name);
  }
}

TEST_F(SignedMessageTest, RefusedMessagesHandOutNothing) {
  // A changed signature byte, a changed content byte (which only the messageDigest
  // comparison notices on some platforms), an expired link, nine links, another anchor.
  for (const wchar_t* name : {L"msg-badsig.p7", L"msg-altered.p7", L"msg-expired.p7", L"msg-chain9.p7",
                              L"msg-other-anchor.p7"}) {
    const Verdict verdict = Verify(name, anchor_);
    EXPECT_FALSE(verdict.passed) << Utf8(name);
    EXPECT_TRUE(verdict.content.empty()) << Utf8(name);
  }
}

TEST_F(SignedMessageTest, TrustFollowsTheAnchorGiven) {
  const std::string other = ReadAll(KitFile(L"other-anchor.der"));
  EXPECT_TRUE(Verify(L"msg-other-anchor.p7", other).passed);
  EXPECT_FALSE(Verify(L"msg-good.p7", other).passed);
  // The product's own authority signed none of the kit's messages.
  ByteBuffer builtIn;
  ASSERT_TRUE(AddOnAnchor::LoadBuiltInAnchor(builtIn));
  EXPECT_FALSE(Verify(L"msg-good.p7", std::string(reinterpret_cast<const char*>(builtIn.data()), builtIn.size())).passed);
  EXPECT_FALSE(Verify(L"msg-good.p7", "").passed);
}

TEST_F(SignedMessageTest, NullAnchorOrGarbageFails) {
  const std::string message = ReadAll(KitFile(L"msg-good.p7"));
  ByteBuffer content;
  Win32SignedMessageVerifier verifier;
  EXPECT_FALSE(verifier.VerifySignedMessage(reinterpret_cast<const uint8_t*>(message.data()),
                                            static_cast<uint32_t>(message.size()), content, nullptr, 0));
  const std::string garbage = "not a signed message at all";
  EXPECT_FALSE(verifier.VerifySignedMessage(reinterpret_cast<const uint8_t*>(garbage.data()),
                                            static_cast<uint32_t>(garbage.size()), content,
                                            reinterpret_cast<const uint8_t*>(anchor_.data()),
                                            static_cast<uint32_t>(anchor_.size())));
  EXPECT_TRUE(content.empty());
}

TEST_F(SignedMessageTest, AnchorComesFromTheOverrideFileElseIsBuiltIn) {
  Win32ProductFiles files;
  ByteBuffer anchor;
  ASSERT_TRUE(AddOnAnchor::LoadAnchor(files, FromWide(KitFile(L"anchor.der").c_str()), anchor));
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(anchor.data()), anchor.size()), anchor_);
  EXPECT_FALSE(AddOnAnchor::LoadAnchor(files, u"C:\\no\\such\\anchor.der", anchor));

  ASSERT_TRUE(AddOnAnchor::LoadAnchor(files, u"", anchor));
  // The built-in block is one well-formed certificate.
  PCCERT_CONTEXT certificate = CertCreateCertificateContext(X509_ASN_ENCODING, anchor.data(),
                                                            static_cast<DWORD>(anchor.size()));
  ASSERT_NE(certificate, nullptr);
  char name[128] = {};
  CertGetNameStringA(certificate, CERT_NAME_SIMPLE_DISPLAY_TYPE, 0, nullptr, name, sizeof(name));
  EXPECT_STREQ(name, "Lumen Add-on Channel Authority");
  CertFreeCertificateContext(certificate);
}

}  // namespace
}  // namespace SASM::WineTest
