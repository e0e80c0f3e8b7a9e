#include "delivery/AddOnStore.h"

#include <cstring>
#include <vector>

#include "delivery/AddOnAnchor.h"
#include "delivery/AddOnNames.h"
#include "delivery/DigestManifest.h"
#include "delivery/SignedPackage.h"

namespace SASM {
namespace {

std::u16string_view NameOf(const char16_t* name) { return name ? std::u16string_view(name) : std::u16string_view(); }

}  // namespace

void AddOnStore::CreateFolders(std::u16string_view path) {
  std::vector<std::u16string> missing;
  for (std::u16string folder = ProductFolders::FolderOf(path); !folder.empty();
       folder = ProductFolders::FolderOf(folder)) {
    if (delivery_.files->DirectoryExists(folder)) break;
    missing.push_back(folder);
  }
  for (auto it = missing.rbegin(); it != missing.rend(); ++it) delivery_.files->CreateDirectory(*it);
}

bool AddOnStore::VerifiedContent(const uint8_t* message, uint32_t size, std::u16string_view overridePath,
                                 ByteBuffer& content) {
  ByteBuffer anchor;
  if (!AddOnAnchor::LoadAnchor(*delivery_.files, overridePath, anchor)) return false;
  return delivery_.verifier->VerifySignedMessage(message, size, content, anchor.data(),
                                                 static_cast<uint32_t>(anchor.size()));
}

uint32_t AddOnStore::InstallSignedPackage(const char16_t* name, const uint8_t* data, uint32_t size,
                                          std::u16string_view overridePath) {
  std::u16string path;
  if (!AddOnNames::IsValidProductName(name) ||
      !folders_.ExecutablePath(NameOf(name), ProductFolders::kPerUser, path))
    return AddOnResult::kFailed;
  CreateFolders(path);

  uint32_t code = AddOnResult::kFailed;
  FileHandleId file = 0;
  if (delivery_.files->CreateForWrite(path, file) == 0) {
    ByteBuffer anchor;
    ByteBuffer content;
    uint32_t unpackedSize = 0;
    if (!AddOnAnchor::LoadAnchor(*delivery_.files, overridePath, anchor) ||
        !delivery_.verifier->VerifySignedMessage(data, size, content, anchor.data(),
                                                 static_cast<uint32_t>(anchor.size()))) {
      code = AddOnResult::kRefused;
    } else {
      switch (SignedPackage::ReadHeader(content.data(), content.size(), unpackedSize)) {
        case SignedPackage::Header::WrongMagic:
          code = AddOnResult::kRefused;
          break;
        case SignedPackage::Header::BoundExceeded:
          break;
        case SignedPackage::Header::Good: {
          ByteBuffer unpacked;
          // One byte at least, so that an empty product still has somewhere to go.
          if (!unpacked.Allocate(unpackedSize ? unpackedSize : 1)) {
            code = AddOnResult::kNoMemory;
            break;
          }
          uint32_t unpackedBytes = unpackedSize;
          if (!delivery_.unpacker->Uncompress(unpacked.data(), unpackedBytes,
                                              content.data() + SignedPackage::kHeaderSize,
                                              static_cast<uint32_t>(content.size() - SignedPackage::kHeaderSize)))
            break;
          uint32_t written = 0;
          if (delivery_.files->WriteAtEnd(file, unpacked.data(), unpackedBytes, written) == 0 &&
              written == unpackedBytes)
            code = AddOnResult::kStored;
          break;
        }
      }
    }
    delivery_.files->Close(file);
  }
  // Never a file with unchecked content at the product's path.
  if (code != AddOnResult::kStored) delivery_.files->Delete(path);
  return code;
}

uint32_t AddOnStore::StoreProductDigest(const char16_t* name, const uint8_t* data, uint32_t size) {
  std::u16string path;
  if (!AddOnNames::IsValidProductName(name) ||
      !folders_.ExecutablePath(NameOf(name), ProductFolders::kPerUser, path))
    return AddOnResult::kRefused;
  path = ProductFolders::FolderOf(path) + u"\\" + kDigestFileName;
  FileHandleId file = 0;
  if (delivery_.files->CreateForWrite(path, file) != 0) return AddOnResult::kFailed;
  uint32_t written = 0;
  const bool complete = delivery_.files->WriteAtEnd(file, data, size, written) == 0 && written == size;
  delivery_.files->Close(file);
  return complete ? AddOnResult::kStored : AddOnResult::kFailed;
}

bool AddOnStore::LoadProductDigest(const char16_t* name, ByteBuffer& text, std::u16string_view overridePath,
                                   int32_t choice) {
  text.reset();
  std::u16string path;
  if (!AddOnNames::IsValidProductName(name) || !folders_.ExecutablePath(NameOf(name), choice, path)) return false;
  ByteBuffer message;
  ByteBuffer content;
  if (!delivery_.files->LoadFileToBuffer(ProductFolders::FolderOf(path) + u"\\" + kDigestFileName, message) ||
      !VerifiedContent(message.data(), static_cast<uint32_t>(message.size()), overridePath, content) ||
      !text.Allocate(content.size() + 1))
    return false;
  if (!content.empty()) std::memcpy(text.data(), content.data(), content.size());
  text.data()[content.size()] = 0;
  return true;
}

bool AddOnStore::VerifyProductDigest(const char16_t* name, std::u16string_view overridePath, int32_t choice) {
  ByteBuffer text;
  if (!LoadProductDigest(name, text, overridePath, choice)) return false;
  std::u16string executable;
  folders_.ExecutablePath(NameOf(name), choice, executable);
  const std::u16string folder = ProductFolders::FolderOf(executable) + u"\\";
  const std::u16string executableName = std::u16string(NameOf(name)) + u".exe";

  DigestManifest manifest;
  DigestManifest::ParseDigestManifest(reinterpret_cast<const char*>(text.data()), manifest);
  if (manifest.used() == 0) return false;

  IDigestPlatform& digest = *delivery_.digest;
  ByteBuffer block;
  if (!block.Allocate(kHashBlock) || !digest.BeginHash()) return false;
  bool executableSeen = false;
  for (std::string_view reference : manifest.ReferenceNames()) {
    const std::u16string wide = platform_.system->FromSystemCodePage(reference);
    // A prefix test by the reference's length: the signed list decides what counts.
    if (wide.size() <= executableName.size() && executableName.compare(0, wide.size(), wide) == 0)
      executableSeen = true;
    FileHandleId file = 0;
    // A missing file adds nothing, which changes the hash all the same.
    if (delivery_.files->OpenForReading(folder + wide, file) != 0) continue;
    uint32_t read = 0;
    bool hashed = true;
    while (delivery_.files->Read(file, block.data(), kHashBlock, read) == 0 && read > 0) {
      if (!digest.HashData(block.data(), read)) {
        hashed = false;
        break;
      }
    }
    delivery_.files->Close(file);
    if (!hashed) return false;
  }
  uint8_t hash[IDigestPlatform::kHashSize];
  std::string computed;
  if (!digest.FinishHash(hash) || !digest.ToBase64(hash, sizeof(hash), computed)) return false;
  const std::string_view expected(manifest.digestValue());
  return executableSeen && !computed.empty() && !expected.empty() && computed == expected;
}

}  // namespace SASM
