#pragma once
// Stores add-on products and checks them before use. A package is checked once,
// as it is unpacked to the product's executable; the product's signed digest
// is checked each time the product is about to be used.
#include <cstdint>
#include <string_view>

#include "delivery/ByteBuffer.h"
#include "delivery/IDigestPlatform.h"
#include "delivery/IProductFiles.h"
#include "delivery/ISignedMessageVerifier.h"
#include "delivery/IUnpacker.h"
#include "delivery/ProductFolders.h"
#include "engine/Platform.h"

namespace SASM {

struct DeliveryPlatform {
  ISignedMessageVerifier* verifier;
  IProductFiles* files;
  IDigestPlatform* digest;
  IUnpacker* unpacker;
};

// The outcome of storing a download, as the client reads it.
namespace AddOnResult {
constexpr uint32_t kStored = 0;
constexpr uint32_t kFailed = 3;
constexpr uint32_t kNoMemory = 4;
constexpr uint32_t kNoData = 5;
constexpr uint32_t kRefused = 6;
}  // namespace AddOnResult

class AddOnStore {
 public:
  static constexpr uint32_t kHashBlock = 65536;
  static constexpr char16_t kDigestFileName[] = u"digest.s";

  AddOnStore(const Platform& platform, const DeliveryPlatform& delivery)
      : platform_(platform), delivery_(delivery), folders_(platform) {}

  // Unpacks a signed package to the product's executable. The file exists from
  // before the check and is deleted again unless the result is kStored. A bad
  // name gives kFailed here.
  uint32_t InstallSignedPackage(const char16_t* name, const uint8_t* data, uint32_t size,
                                std::u16string_view overridePath);
  // Writes data as it stands to the product's digest.s; its signature is checked
  // whenever it is read. The folder must exist. A bad name gives kRefused here.
  uint32_t StoreProductDigest(const char16_t* name, const uint8_t* data, uint32_t size);
  // The verified content of digest.s with a NUL behind it.
  bool LoadProductDigest(const char16_t* name, ByteBuffer& text, std::u16string_view overridePath, int32_t choice);
  // True if the files the digest lists, the executable among them, hash to its value.
  bool VerifyProductDigest(const char16_t* name, std::u16string_view overridePath, int32_t choice);

  const ProductFolders& Folders() const { return folders_; }

 private:
  // Creates the folders above path that are missing, from the nearest existing one down.
  void CreateFolders(std::u16string_view path);
  bool VerifiedContent(const uint8_t* message, uint32_t size, std::u16string_view overridePath, ByteBuffer& content);

  Platform platform_;
  DeliveryPlatform delivery_;
  ProductFolders folders_;
};

}  // namespace SASM
