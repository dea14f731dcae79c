#pragma once
// Names for new files and folders. Whether a name is taken is asked from outside.

#include <functional>
#include <string>
#include <string_view>

namespace zeq::filesystem {

/// True if something of that name, or path, exists.
using IsTaken = std::function<bool(const std::wstring&)>;

/// Whether a text may serve as the base name of a file: not blank, and free of dots, of line breaks and of
/// the characters that paths, wildcards and lists of files give a meaning to.
[[nodiscard]] bool isSensibleBaseName(std::wstring_view name) noexcept;

/// The first free one of the names prefix001suffix, prefix002suffix, … up to the last number; "" if there is
/// none. A name that is taken is asked for twice: if it is free the second time, the search ends with "".
[[nodiscard]] std::wstring suggestName(std::wstring_view prefix, std::wstring_view suffix, int last,
                                       const IsTaken& isTaken);

/// The first free one of the paths stem.000 to stem.999; "" if there is none.
[[nodiscard]] std::wstring archivePath(const std::wstring& stem, const IsTaken& isTaken);

/// The first free path that a generator makes in maxTries + 1 attempts; "" if there is none.
[[nodiscard]] std::wstring freePath(int maxTries, const std::function<std::wstring()>& makePath,
                                    const IsTaken& isTaken);

}  // namespace zeq::filesystem
