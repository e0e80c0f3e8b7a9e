#pragma once
// The broker's dialog family as plain logic: the open and save dialogs the
// server shows for a sandboxed client, owned by the client's window, and the
// print dialog whose device context the print relay draws on. A file the user
// chooses in a save dialog becomes a write cookie whose file is created by its
// first write: the user's choice stands in for the path policy.
//
// The client's filter arrives as one UTF-16 string in a byte array, fields
// closed by the two characters "\0" and a backslash written as "\\"; it is
// decoded where it lies, and the dialog's file types point into it.
#include <cstdint>
#include <string>
#include <vector>

#include "broker/BrokerCookieTable.h"
#include "broker/BrokerFilePlatform.h"
#include "broker/DialogOwnerPolicy.h"
#include "broker/DialogPlatform.h"
#include "broker/EnterpriseProtectionPlatform.h"

namespace SASM {

class BrokerDialogMethods {
 public:
  static constexpr uint32_t kMostFilterPairs = 0x0FFFFFFF;
  // The option bits a client may set on a file dialog.
  static constexpr uint32_t kOptionMask = 0xFF31FF1A;
  static constexpr uint32_t kFileSystemPath = 0x80058000;
  static constexpr uint32_t kParentRelativeName = 0x80018001;
  static constexpr const char16_t* kOwnerProperties = u"prop:System.Security.EncryptionOwners";
  static constexpr uint32_t kPrintDialogSize = 120;

  // One field of a decoded filter: its first character and its length.
  struct FilterField {
    char16_t* text;
    uint32_t length;
  };

  BrokerDialogMethods(DialogPlatform& dialogs, BrokerFilePlatform& arrays, DialogOwnerPolicy& owners,
                      BrokerCookieTable& cookies, EnterpriseProtectionPlatform& protection)
      : dialogs_(dialogs), arrays_(arrays), owners_(owners), cookies_(cookies), protection_(protection) {}
  BrokerDialogMethods(const BrokerDialogMethods&) = delete;
  BrokerDialogMethods& operator=(const BrokerDialogMethods&) = delete;

  // Decodes `byteLength` bytes of text in place into alternating name and
  // pattern fields, each now ending in a terminator. 0 or 0x80070057.
  static int32_t DecodeFilterText(char16_t* text, uint32_t byteLength, uint32_t pairs,
                                  std::vector<FilterField>& fields);
  // The array's text decoded and `pairs` specs on the process heap pointing
  // into it; the caller frees them with the platform.
  int32_t ParseFilterArray(uint32_t pairs, BrokerFilePlatform::ByteArray array, DialogPlatform::FilterSpec*& specsOut);
  // The tests both file dialogs make before anything is shown.
  int32_t CheckFileDialogArguments(uint32_t p_hwnd, uint32_t dwFilterPairs, uint32_t dwFilterLength,
                                   BrokerFilePlatform::ByteArray p_FilterArray);

  // `chosen` gets the entries of the reply: one path, or the directory and then each name.
  int32_t OpenDialog(uint32_t p_hwnd, uint32_t dwFilterPairs, uint32_t dwFilterLength,
                     BrokerFilePlatform::ByteArray p_FilterArray, uint32_t dwFlags, std::vector<std::u16string>* chosen);
  // `p_chosenFilePath` is cleared on every failure.
  int32_t SaveDialog2(uint32_t p_hwnd, const char16_t* p_lpwstrInitialFileName, uint32_t dwFilterPairs,
                      uint32_t dwFilterLength, BrokerFilePlatform::ByteArray p_FilterArray, uint32_t dwFlags,
                      uint32_t* p_fileCookie, std::u16string* p_chosenFilePath);
  int32_t PrintDialog(uint32_t p_hwnd, uint32_t* p_nFromPage, uint32_t* p_nToPage, uint32_t* p_dwFlags,
                      uint32_t* p_hdc);

 private:
  // Parses and sets the file types when there are pairs; the specs stay until Show is over.
  int32_t SetFileTypes(DialogPlatform::FileDialog& dialog, uint32_t pairs, BrokerFilePlatform::ByteArray array,
                       DialogPlatform::FilterSpec*& specs);
  void OfferOwner(DialogPlatform::FileDialog& dialog);
  static std::u16string ChosenOwner(DialogPlatform::FileDialog& dialog);
  int32_t CollectChosen(DialogPlatform::FileDialog& dialog, std::vector<std::u16string>& chosen);

  DialogPlatform& dialogs_;
  BrokerFilePlatform& arrays_;
  DialogOwnerPolicy& owners_;
  BrokerCookieTable& cookies_;
  EnterpriseProtectionPlatform& protection_;
};

}  // namespace SASM
