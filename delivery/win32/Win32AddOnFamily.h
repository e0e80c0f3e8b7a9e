#pragma once
// What a broker object needs for the add-on family: the real platform under
// AddOnStore and AddOnMethods, built with the object.
#include "delivery/AddOnMethods.h"
#include "delivery/AddOnStore.h"
#include "delivery/win32/Win32AddOnProcesses.h"
#include "delivery/win32/Win32DigestPlatform.h"
#include "delivery/win32/Win32ProductFiles.h"
#include "delivery/win32/Win32SignedMessageVerifier.h"
#include "delivery/win32/WinInetHttpClient.h"
#include "delivery/win32/ZlibUnpacker.h"
#include "engine/win32/Win32Platform.h"

namespace SASM {

class Win32AddOnFamily {
 public:
  Win32AddOnFamily(BrokerCookieTable& cookies, HostCallbacks* host)
      : store_(Win32Platform(), DeliveryPlatform{&verifier_, &files_, &digest_, &unpacker_}),
        methods_(cookies, store_, http_, processes_, host) {}
  Win32AddOnFamily(const Win32AddOnFamily&) = delete;
  Win32AddOnFamily& operator=(const Win32AddOnFamily&) = delete;

  AddOnMethods& Methods() { return methods_; }

 private:
  Win32SignedMessageVerifier verifier_;
  Win32ProductFiles files_;
  Win32DigestPlatform digest_;
  ZlibUnpacker unpacker_;
  WinInetHttpClient http_;
  Win32AddOnProcesses processes_;
  AddOnStore store_;
  AddOnMethods methods_;
};

}  // namespace SASM
