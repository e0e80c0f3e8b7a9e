#include "broker/win32/LumenBrokerZoneIdentifier.h"

#include <urlmon.h>

#include <string>

#include "broker/ZoneTransferText.h"
#include "engine/win32/ComPtr.h"
#include "engine/win32/ScopedHandle.h"
#include "engine/win32/WideText.h"

namespace SASM {

namespace {

// IZoneIdentifier, as urlmon declares it.
const IID kZoneIdentifierIid = {0xcd45f185, 0x1b21, 0x48e2, {0x96, 0x7b, 0xea, 0xd7, 0x43, 0xa8, 0x91, 0x4e}};
// The most of a stream the direct reading looks at.
constexpr DWORD kStreamLimit = 4096;

std::wstring StreamPath(const wchar_t* path) { return path + ToWide(ZoneTransferText::kStreamSuffix); }

HRESULT CreateZoneIdentifier(ComPtr<IZoneIdentifier>& zone) {
  return CoCreateInstance(LumenBrokerZoneIdentifier::kPersistentZoneIdentifier, nullptr, CLSCTX_INPROC_SERVER,
                          kZoneIdentifierIid, zone.receiveVoid());
}

bool ReadStream(const wchar_t* path, uint32_t& zone) {
  ScopedHandle stream(CreateFileW(StreamPath(path).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!stream) return false;
  std::string text(kStreamLimit, '\0');
  DWORD read = 0;
  if (!ReadFile(stream.get(), text.data(), kStreamLimit, &read, nullptr)) return false;
  text.resize(read);
  return ZoneTransferText::ParseZoneId(text, zone);
}

void WriteStream(const wchar_t* path, uint32_t zone) {
  ScopedHandle stream(CreateFileW(StreamPath(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!stream) return;
  std::string text = ZoneTransferText::Compose(zone);
  DWORD written = 0;
  WriteFile(stream.get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

}  // namespace

const CLSID LumenBrokerZoneIdentifier::kPersistentZoneIdentifier = {
    0x0968e258, 0x16c7, 0x4dba, {0xaa, 0x86, 0x46, 0x2d, 0xd6, 0x1e, 0x31, 0xa3}};

bool LumenBrokerZoneIdentifier::ReadMark(const wchar_t* path, uint32_t& zone) {
  if (!path) return false;
  ComPtr<IZoneIdentifier> identifier;
  HRESULT created = CreateZoneIdentifier(identifier);
  if (created == REGDB_E_CLASSNOTREG) return ReadStream(path, zone);
  if (FAILED(created)) return false;
  ComPtr<IPersistFile> file;
  if (FAILED(identifier->QueryInterface(IID_IPersistFile, file.receiveVoid()))) return false;
  if (FAILED(file->Load(path, STGM_READ))) return false;
  DWORD id = 0;
  if (FAILED(identifier->GetId(&id))) return false;
  zone = id;
  return true;
}

void LumenBrokerZoneIdentifier::Mark(const wchar_t* path) {
  if (!com_.Succeeded() || !path) return;
  uint32_t existing = 0;
  if (ReadMark(path, existing) && existing != 0) return;

  ComPtr<IZoneIdentifier> identifier;
  HRESULT created = CreateZoneIdentifier(identifier);
  if (created == REGDB_E_CLASSNOTREG) {
    WriteStream(path, ZoneTransferText::kInternetZone);
    return;
  }
  if (FAILED(created) || FAILED(identifier->SetId(ZoneTransferText::kInternetZone))) return;
  ComPtr<IPersistFile> file;
  if (FAILED(identifier->QueryInterface(IID_IPersistFile, file.receiveVoid()))) return;
  file->Save(path, TRUE);
}

}  // namespace SASM
