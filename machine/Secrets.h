// What identifies a machine, and the search for copies of it.
// Takes no text for a secret that any machine may show: "Not Specified", "None".
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "machine/Bytes.h"

namespace machine {

/// The text with an 'X' for each letter and digit; behind "UUID:", in any case, with a '0' for
/// each.
std::string PlaceholderFor(const std::string& text);

/// The same for the part behind "UUID:" and for what has the shape of a UUID,
/// "912C0E5A-1277-0B40-8E31-001A64C37D02", alone.
std::string WithUuidsHidden(std::string text);

/// A UUID as its place keeps it, with something else in its place. systally reports no UUID that
/// begins with 0; then the placeholder does, too.
Bytes PlaceholderForUuid(const Bytes& uuid);

class Secrets {
  public:
    /// A serial number or an asset tag, without the blanks around it. A weak one, which has fewer
    /// than five characters or no digit, is found as a whole word alone.
    void AddText(const std::string& text);
    /// A UUID as the table stores it: its bytes in that order and in the standard's, and what is
    /// written for each.
    void AddUuid(const Bytes& uuid);
    /// A name that the machine shows on purpose: a weak text that is a word of it is no secret.
    void AddName(const std::string& name);

    /// Replaces all copies between two offsets, longer ones first. Each keeps its length.
    void HideIn(Bytes& bytes, size_t first, size_t last) const;
    /// The same for the bytes of UUIDs alone.
    void HideUuidsIn(Bytes& bytes, size_t first, size_t last) const;

  private:
    struct Secret {
        Bytes bytes;
        Bytes placeholder;
        bool isText = true;  ///< in upper or lower case
        bool isWeak = false;
    };

    void Add(const Secret& secret);
    static void Hide(const Secret& secret, Bytes& bytes, size_t first, size_t last);
    bool IsPartOfAName(const Secret& secret) const;

    std::multimap<size_t, Secret, std::greater<>> m_secrets;  // by length
    std::vector<Bytes> m_names;
};

}  // namespace machine
