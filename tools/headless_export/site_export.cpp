#include "tools/headless_export/site_export.h"

#include <cstdio>

#include "catalogue/metadata_catalogue.h"
#include "catalogue/target_builder.h"
#include "engine/business_basic.h"
#include "engine/recorded_error.h"
#include "engine/site_configuration.h"
#include "export/export_run.h"
#include "platform/code_page.h"
#include "platform/error.h"
#include "platform/file.h"

namespace headless {

namespace {

/// Another program may delete the file first.
void RemoveFormer(const std::string& target) {
    try {
        if (platform::FileExists(target)) platform::RemoveFile(target);
    } catch (const platform::Error& error) {
        if (error.Number != platform::FileNotFound) throw;
    }
}

}  // namespace

void Window::ShowMessage(const platform::Message& message) {
    std::fprintf(stderr, "%s\n", message.Text.c_str());
}

void Window::Yield() {
    if (mYield) mYield();
}

SiteExport::SiteExport(const std::filesystem::path& target, std::function<void()> beforeRecord)
    : mWindow(std::move(beforeRecord)) {
    engine::LoadSiteConfiguration(false, mWindow);
    if (!engine::gEngine) throw engine::LastRecordedError().value_or(platform::Error(platform::ObjectNotSet));
    mAlphabet.emplace();
    catalogue::StartCatalogue(mState, mList);
    for (int box = 0; box < catalogue::TableList::BoxCount && !mList.Caption(box).empty(); ++box)
        mTables.push_back(platform::Utf8FromWide(mList.Caption(box)));
    RemoveFormer(target.string());
    catalogue::BuildTargetDatabase(mState, target.string());
}

SiteExport::~SiteExport() {
    engine::gEngine.reset();
}

std::int32_t SiteExport::Copy(std::size_t table) {
    const auto box = static_cast<std::int16_t>(table);
    catalogue::EmptyTableFiles(mState);
    catalogue::OpenFiles(mState, mList, mWindow, box);
    catalogue::BuildCollection(mState, mList, box);
    exporting::AddData(mState, mList, mWindow, box);
    return mState.TargetRecordset->RecordCount();
}

}  // namespace headless
