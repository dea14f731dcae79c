#pragma once
// An application's door to its help file: topics by name, in WinHelp or HTML Help as the file's extension
// says.

#include <string>
#include <string_view>
#include <unordered_map>

#include "ZEQUtility2.h"
#include "automation/Object.h"

namespace zeq::help {

class CWinHelp final : public automation::Object<CWinHelp, ::CWinHelp, ::_CWinHelp, void, ::IHelpProvider> {
 public:
  ~CWinHelp() override;

  // _CWinHelp
  STDMETHODIMP Create(BSTR HelpFileA, long HWndAppA) noexcept override;
  STDMETHODIMP ClearTopics() noexcept override;
  STDMETHODIMP get_TopicID(BSTR TopicNameA, long* result) noexcept override;
  STDMETHODIMP put_TopicID(BSTR TopicNameA, long value) noexcept override;
  STDMETHODIMP ClearFormTopicNames() noexcept override;
  STDMETHODIMP get_FormTopicName(BSTR FormNameA, BSTR ContextNameA, BSTR* result) noexcept override;
  STDMETHODIMP put_FormTopicName(BSTR FormNameA, BSTR ContextNameA, BSTR value) noexcept override;
  STDMETHODIMP get_HelpFile(BSTR* result) noexcept override;
  STDMETHODIMP put_HelpFile(BSTR value) noexcept override;
  STDMETHODIMP get_hwnd(long* result) noexcept override;
  STDMETHODIMP put_hwnd(long value) noexcept override;
  STDMETHODIMP get_DefaultTopic(BSTR* result) noexcept override;
  STDMETHODIMP put_DefaultTopic(BSTR value) noexcept override;
  STDMETHODIMP ShowTopic(BSTR TopicNameA, BSTR FormNameA, BSTR ContextNameA) noexcept override;
  STDMETHODIMP ShowHelpFileTopic(BSTR HelpFileA, long TopicIDA) noexcept override;
  STDMETHODIMP Hide() noexcept override;
  STDMETHODIMP LocateHelp() noexcept override;

  // _CWinHelp and IHelpProvider
  STDMETHODIMP ShowTopicID(long TopicIDA) noexcept override;
  STDMETHODIMP ShowContents() noexcept override;
  STDMETHODIMP ShowIndex() noexcept override;
  STDMETHODIMP ShowFind() noexcept override;
  STDMETHODIMP ShowKeyword(BSTR KeyWordA) noexcept override;

  // IHelpProvider
  STDMETHODIMP ShowHelp(BSTR TopicNameA, BSTR FormNameA, BSTR ContextNameA) noexcept override;

 private:
  struct Viewer;

  [[nodiscard]] std::wstring helpFile() const;
  [[nodiscard]] Viewer viewer() const;
  [[nodiscard]] Viewer viewerFor(std::wstring_view file) const;
  [[nodiscard]] HWND owner() const noexcept;
  [[nodiscard]] long topicId(std::wstring_view topic) const;
  [[nodiscard]] long resolve(std::wstring_view topic, std::wstring_view form,
                             std::wstring_view context) const;

  // Both under their keys in upper case.
  std::unordered_map<std::wstring, long> topicIds_;
  std::unordered_map<std::wstring, std::wstring> formTopics_;
  std::wstring defaultTopic_;
  std::wstring helpFile_;
  long window_ = 0;
};

}  // namespace zeq::help
