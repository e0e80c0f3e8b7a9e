#include "delivery/win32/Win32SignedMessageVerifier.h"

#include "engine/win32/WindowsApi.h"

#include <wincrypt.h>

#include <cstring>
#include <memory>
#include <new>

#include "delivery/win32/Win32Sha256.h"

namespace SASM {
namespace {

constexpr DWORD kEncoding = X509_ASN_ENCODING | PKCS_7_ASN_ENCODING;  // 0x10001
// Signature and time validity of the subject.
constexpr DWORD kLinkChecks = CERT_STORE_SIGNATURE_FLAG | CERT_STORE_TIME_VALIDITY_FLAG;  // 3
constexpr char kSha256Oid[] = "2.16.840.1.101.3.4.2.1";

class ScopedCertificate {
 public:
  explicit ScopedCertificate(PCCERT_CONTEXT context = nullptr) : context_(context) {}
  ScopedCertificate(const ScopedCertificate&) = delete;
  ScopedCertificate& operator=(const ScopedCertificate&) = delete;
  ~ScopedCertificate() { reset(); }
  PCCERT_CONTEXT get() const { return context_; }
  PCCERT_CONTEXT* receive() {
    reset();
    return &context_;
  }
  void reset(PCCERT_CONTEXT context = nullptr) {
    if (context_) CertFreeCertificateContext(context_);
    context_ = context;
  }
  PCCERT_CONTEXT release() {
    PCCERT_CONTEXT context = context_;
    context_ = nullptr;
    return context;
  }

 private:
  PCCERT_CONTEXT context_;
};

class ScopedStore {
 public:
  explicit ScopedStore(HCERTSTORE store) : store_(store) {}
  ScopedStore(const ScopedStore&) = delete;
  ScopedStore& operator=(const ScopedStore&) = delete;
  ~ScopedStore() {
    if (store_) CertCloseStore(store_, 0);
  }
  HCERTSTORE get() const { return store_; }

 private:
  HCERTSTORE store_;
};

class ScopedMessage {
 public:
  explicit ScopedMessage(HCRYPTMSG message) : message_(message) {}
  ScopedMessage(const ScopedMessage&) = delete;
  ScopedMessage& operator=(const ScopedMessage&) = delete;
  ~ScopedMessage() {
    if (message_) CryptMsgClose(message_);
  }
  HCRYPTMSG get() const { return message_; }

 private:
  HCRYPTMSG message_;
};

// The same certificate, whether or not the store handed out the same context for it.
bool SameCertificate(PCCERT_CONTEXT a, PCCERT_CONTEXT b) {
  return a == b || (a->cbCertEncoded == b->cbCertEncoded &&
                    std::memcmp(a->pbCertEncoded, b->pbCertEncoded, a->cbCertEncoded) == 0);
}

bool SubjectSignedBy(PCCERT_CONTEXT subject, PCCERT_CONTEXT issuer) {
  DWORD flags = kLinkChecks;
  // The platform answers success and leaves a flag set for the check that failed.
  return CertVerifySubjectCertificateContext(subject, issuer, &flags) && flags == 0;
}

// A parameter of the decoded message, read with a size call first.
bool MessageParameter(HCRYPTMSG message, DWORD type, ByteBuffer& value) {
  DWORD size = 0;
  if (!CryptMsgGetParam(message, type, 0, nullptr, &size) || size == 0) return false;
  if (!value.Allocate(size)) return false;
  return CryptMsgGetParam(message, type, 0, value.data(), &size) != FALSE;
}

}  // namespace

bool Win32SignedMessageVerifier::SignedDigestMatches(const uint8_t* message, uint32_t size, const uint8_t* content,
                                                     size_t contentSize) {
  ScopedMessage decoder(CryptMsgOpenToDecode(kEncoding, 0, 0, 0, nullptr, nullptr));
  if (!decoder.get() || !CryptMsgUpdate(decoder.get(), message, size, TRUE)) return false;
  ByteBuffer infoBytes;
  if (!MessageParameter(decoder.get(), CMSG_SIGNER_INFO_PARAM, infoBytes)) return false;
  const auto* info = reinterpret_cast<const CMSG_SIGNER_INFO*>(infoBytes.data());
  if (info->AuthAttrs.cAttr == 0) return true;

  const CRYPT_ATTR_BLOB* signedDigest = nullptr;
  for (DWORD i = 0; i < info->AuthAttrs.cAttr; ++i) {
    const CRYPT_ATTRIBUTE& attribute = info->AuthAttrs.rgAttr[i];
    if (!attribute.pszObjId || std::strcmp(attribute.pszObjId, szOID_RSA_messageDigest) != 0) continue;
    // Exactly one attribute of exactly one value.
    if (signedDigest || attribute.cValue != 1) return false;
    signedDigest = &attribute.rgValue[0];
  }
  // The channel signs with SHA-256 only.
  if (!signedDigest || !info->HashAlgorithm.pszObjId || std::strcmp(info->HashAlgorithm.pszObjId, kSha256Oid) != 0)
    return false;

  DWORD decodedSize = 0;
  if (!CryptDecodeObject(kEncoding, X509_OCTET_STRING, signedDigest->pbData, signedDigest->cbData, 0, nullptr,
                         &decodedSize))
    return false;
  ByteBuffer decoded;
  if (!decoded.Allocate(decodedSize) ||
      !CryptDecodeObject(kEncoding, X509_OCTET_STRING, signedDigest->pbData, signedDigest->cbData, 0,
                         decoded.data(), &decodedSize))
    return false;
  const auto* expected = reinterpret_cast<const CRYPT_DATA_BLOB*>(decoded.data());

  Win32Sha256 hash;
  uint8_t computed[Win32Sha256::kSize];
  if (!hash.Begin() || !hash.Update(content, contentSize) || !hash.Finish(computed)) return false;
  return expected->cbData == sizeof(computed) && std::memcmp(expected->pbData, computed, sizeof(computed)) == 0;
}

bool Win32SignedMessageVerifier::VerifySignedMessage(const uint8_t* message, uint32_t size, ByteBuffer& content,
                                                     const uint8_t* anchor, uint32_t anchorSize) {
  content.reset();
  if (!anchor) return false;

  CRYPT_VERIFY_MESSAGE_PARA parameters{};
  parameters.cbSize = sizeof(parameters);
  parameters.dwMsgAndCertEncodingType = kEncoding;
  DWORD contentSize = 0;
  if (!CryptVerifyMessageSignature(&parameters, 0, message, size, nullptr, &contentSize, nullptr)) return false;
  ByteBuffer signedContent;
  if (!signedContent.Allocate(contentSize)) return false;
  ScopedCertificate current;
  if (!CryptVerifyMessageSignature(&parameters, 0, message, size, signedContent.data(), &contentSize,
                                   current.receive()) ||
      !current.get())
    return false;
  if (!SignedDigestMatches(message, size, signedContent.data(), contentSize)) return false;

  ScopedStore carried(CryptGetMessageCertificates(kEncoding, 0, 0, message, size));
  ScopedCertificate trusted(CertCreateCertificateContext(kEncoding, anchor, anchorSize));
  if (!carried.get() || !trusted.get()) return false;

  for (int links = 0;;) {
    ScopedCertificate issuer(CertFindCertificateInStore(carried.get(), kEncoding, 0, CERT_FIND_ISSUER_OF,
                                                        current.get(), nullptr));
    // The top of the carried chain: nothing above it, or it issued itself.
    if (!issuer.get() || SameCertificate(issuer.get(), current.get())) break;
    if (!SubjectSignedBy(current.get(), issuer.get())) return false;
    current.reset(issuer.release());
    if (++links > kMaxLinks) return false;
  }
  if (!SubjectSignedBy(current.get(), trusted.get())) return false;

  content = std::move(signedContent);
  // The platform's size may be below the allocation after the second call.
  content.Shrink(contentSize);
  return true;
}

}  // namespace SASM
