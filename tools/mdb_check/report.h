// What a check of a database file found: damage, which means that somebody reading the file may be told
// something wrong, and notes on what does no harm.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace mdb_check {

class Report {
  public:
    enum class Kind { Damage, Note };
    using Sink = std::function<void(Kind, const std::string&)>;

    /// strict turns notes into damage, for files fresh from our own writer. Every finding goes to sink.
    Report(bool strict, Sink sink) : mStrict(strict), mSink(std::move(sink)) {}

    void Damage(const std::string& text) {
        ++mDamages;
        mSink(Kind::Damage, text);
    }

    /// What Microsoft's engine leaves behind in used files.
    void Note(const std::string& text) {
        if (mStrict) return Damage(text);
        ++mNotes;
        mSink(Kind::Note, text);
    }

    /// An index entry whose key was made again from its row, and is the same.
    void CountKey(bool isText) {
        ++mKeys;
        if (isText) ++mTextKeys;
    }

    std::size_t Keys() const { return mKeys; }
    std::size_t TextKeys() const { return mTextKeys; }  // those of indexes over a text column
    std::size_t Damages() const { return mDamages; }
    std::size_t Notes() const { return mNotes; }

  private:
    bool mStrict;
    Sink mSink;
    std::size_t mDamages = 0;
    std::size_t mNotes = 0;
    std::size_t mKeys = 0;
    std::size_t mTextKeys = 0;
};

}  // namespace mdb_check
