#pragma once
// Enterprise data protection in tables: the identities of the process and of
// the calling client, and for each file one of the three answers the broker
// has to live with — protected to an identity, not protected, or a failed
// query. Answers may come from another thread, as the platform's do.
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "broker/EnterpriseProtectionPlatform.h"

namespace SASM {

class FakeEnterpriseProtectionPlatform : public EnterpriseProtectionPlatform {
 public:
  enum class Answer { kProtected, kNotProtected, kFailed };

  // Without "srpapi.dll" nobody has identities.
  void SetIdentitiesBound(bool bound) { identitiesBound_ = bound; }
  void SetProcessIdentities(std::vector<std::u16string> identities) { process_ = std::move(identities); }
  void SetClientIdentities(std::vector<std::u16string> identities) { client_ = std::move(identities); }
  // The size query answers 0x80070057 instead of saying how much it needs.
  void AnswerSizeQueryWithInvalidArgument() { sizeQueryInvalid_ = true; }
  void FailFilledQuery(int32_t result) { filledQueryResult_ = result; }

  // Files exist when listed here.
  void AddFile(std::u16string path) { files_.insert(std::move(path)); }
  // The answer for a file; files without one are not protected.
  void SetAnswer(std::u16string path, Answer answer, std::u16string identity = u"", int32_t status = 3) {
    answers_[std::move(path)] = {answer, std::move(identity), status};
  }
  void AnswerFromAnotherThread(bool async) { async_ = async; }
  void SetProtectResult(int32_t result) { protectResult_ = result; }
  // What the user answers when the policy manager asks for consent.
  void SetConsent(bool allowed) { consent_ = allowed; }

  // One consent request as the policy manager saw it.
  struct ConsentRequest {
    std::u16string source;
    std::u16string target;
    uint64_t window;
    std::u16string leafName;
    std::u16string remoteUrl;
    bool operator==(const ConsentRequest&) const = default;
  };

  int Impersonations() const { return impersonations_; }
  int Reverts() const { return reverts_; }
  int OpenTokens() const { return openTokens_; }
  // The buffer sizes offered to SrpGetEnterpriseIds, 0 for the size query.
  const std::vector<uint32_t>& OfferedBytes() const { return offeredBytes_; }
  const std::vector<std::u16string>& QueriedPaths() const { return queried_; }
  const std::vector<std::pair<std::u16string, std::u16string>>& Protected() const { return protected_; }
  const std::vector<ConsentRequest>& ConsentRequests() const { return consentRequests_; }

  bool CanGetEnterpriseIds() override { return identitiesBound_; }
  int32_t ImpersonateClient() override {
    ++impersonations_;
    impersonating_ = true;
    return 0;
  }
  void RevertToSelf() override {
    ++reverts_;
    impersonating_ = false;
  }
  bool OpenThreadToken(uint32_t access, Token& token) override;
  bool OpenProcessToken(uint32_t access, Token& token) override {
    if (access != kTokenQuery) return false;
    ++openTokens_;
    token = &processToken_;
    return true;
  }
  void CloseToken(Token token) override { --openTokens_; }
  int32_t GetEnterpriseIds(Token token, uint32_t& bytes, void* block, uint32_t& count) override;
  bool FileExists(const char16_t* path) override { return path && files_.count(path) != 0; }
  void BeginProtectionQuery(const char16_t* path, BrokerFileProtectionInfo& info) override;
  bool CanProtectToIdentity() override { return true; }
  int32_t ProtectToIdentity(const char16_t* path, const char16_t* identity) override {
    protected_.emplace_back(path ? path : u"", identity ? identity : u"");
    return protectResult_;
  }
  bool RequestAccessWithAudit(const char16_t* sourceIdentity, const char16_t* targetIdentity, uint64_t window,
                              const char16_t* leafName, const char16_t* remoteUrl) override {
    auto text = [](const char16_t* value) { return std::u16string(value ? value : u""); };
    consentRequests_.push_back({text(sourceIdentity), text(targetIdentity), window, text(leafName), text(remoteUrl)});
    return consent_;
  }

 private:
  struct FileAnswer {
    Answer answer;
    std::u16string identity;
    int32_t status;
  };

  static void Deliver(const FileAnswer& answer, BrokerFileProtectionInfo& info);

  bool identitiesBound_ = true;
  std::vector<std::u16string> process_;
  std::vector<std::u16string> client_;
  bool impersonating_ = false;
  bool sizeQueryInvalid_ = false;
  int32_t filledQueryResult_ = 0;
  std::set<std::u16string> files_;
  std::map<std::u16string, FileAnswer> answers_;
  bool async_ = false;
  int32_t protectResult_ = 0;
  bool consent_ = true;

  int impersonations_ = 0;
  int reverts_ = 0;
  int openTokens_ = 0;
  std::vector<uint32_t> offeredBytes_;
  std::vector<std::u16string> queried_;
  std::vector<std::pair<std::u16string, std::u16string>> protected_;
  std::vector<ConsentRequest> consentRequests_;
  // Two distinct addresses stand for the two tokens.
  char processToken_ = 0;
  char clientToken_ = 0;
};

}  // namespace SASM
