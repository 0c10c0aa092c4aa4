#include "ui/window_texts.h"

#include "platform/code_page.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {

namespace {

constexpr std::size_t StoreNumberStart = 3;  // 0-based, behind the directory's letters

QString FromBytes(const platform::ByteString& bytes) {
    return QString::fromStdU16String(platform::WideFromBytes(bytes));
}

platform::ByteString StoreNumber(const platform::ByteString& directory) {
    return directory.size() > StoreNumberStart ? directory.substr(StoreNumberStart) : platform::ByteString();
}

}  // namespace

QString VersionText(int major, int minor, int revision) {
    constexpr int MinorDigits = 2;
    constexpr int RevisionDigits = 4;
    constexpr int Decimal = 10;
    const QChar zero = u'0';
    return u"Version   %1.%2.%3"_s.arg(major)
        .arg(minor, MinorDigits, Decimal, zero)
        .arg(revision, RevisionDigits, Decimal, zero);
}

QString VersionText() {
    return VersionText(VANTORA_VERSION_MAJOR, VANTORA_VERSION_MINOR, VANTORA_VERSION_REVISION);
}

std::array<QString, 4> SitePanelTexts(const engine::cSystem& system) {
    return {u"Client :" + FromBytes(system.ComputerName), u"Host :" + FromBytes(system.mUNCDrive),
            u"Terminal :" + FromBytes(system.TerminalID),
            u"Source :" + FromBytes(system.mDirectory) + u"      Store # " +
                FromBytes(StoreNumber(system.mDirectory))};
}

QString WithoutAccessKey(QString text) {
    return text.replace(u'&', u"&&"_s);
}

}  // namespace ui
