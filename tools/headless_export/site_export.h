// An export of a whole site without a window, from Select DB to the closed target, for programs that look at
// what it takes or leaves. The environment points at the site, as it does for the program itself (the env.sh
// of a sample site sets it).
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "catalogue/interface_state.h"
#include "catalogue/table_list.h"
#include "platform/silent_window.h"
#include "tools/sample_site/field_packing.h"

namespace headless {

/// Shows nothing but messages, on standard error, and calls a function where the program looks for events.
class Window : public platform::SilentWindow {
  public:
    explicit Window(std::function<void()> yield) : mYield(std::move(yield)) {}

    void ShowMessage(const platform::Message& message) override;
    void Yield() override;

  private:
    std::function<void()> mYield;
};

/// The captions alone; every table is ticked.
class Captions : public catalogue::TableList {
  public:
    std::u16string Caption(int box) const override { return mCaptions.at(static_cast<std::size_t>(box)); }
    void SetCaption(int box, const std::u16string& caption) override {
        mCaptions.at(static_cast<std::size_t>(box)) = caption;
    }
    void SetColour(int, catalogue::TableColour) override {}
    void SetVisible(int, bool) override {}
    void SetEnabled(int, bool) override {}
    bool Ticked(int) const override { return true; }
    void SetTicked(int, bool) override {}
    void SetToolTip(int, const std::string&) override {}

  private:
    std::array<std::u16string, BoxCount> mCaptions;
};

class SiteExport {
  public:
    /// Starts the engine and builds the target with all its tables, in place of an older file. beforeRecord
    /// is called before each record that is copied. Raises for a site that gives no engine the error
    /// that was recorded at its start, 91 when there is none, and what the catalogue and the target raise.
    explicit SiteExport(const std::filesystem::path& target, std::function<void()> beforeRecord = {});

    /// Ends the engine. A target that is not closed then is written and closed without a word of errors.
    ~SiteExport();
    SiteExport(const SiteExport&) = delete;
    SiteExport& operator=(const SiteExport&) = delete;

    /// The names of the tables (UTF-8), in the order of their boxes.
    const std::vector<std::string>& Tables() const { return mTables; }

    /// Copies all records of the table at a 0-based place; the rows that it has then.
    std::int32_t Copy(std::size_t table);

    /// What the run works on, the target among it.
    catalogue::InterfaceState& State() { return mState; }

  private:
    Window mWindow;
    Captions mList;
    catalogue::InterfaceState mState;
    std::vector<std::string> mTables;
    std::optional<sample::CompressionAlphabet> mAlphabet;  // of a running program
};

}  // namespace headless
