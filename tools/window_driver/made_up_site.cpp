#include "tools/window_driver/made_up_site.h"

#include <QDir>

#include "tools/sample_site/sample_site.h"

using namespace Qt::Literals::StringLiterals;

namespace driver {

MadeUpSite::MadeUpSite(std::int64_t records) {
    const QString site = mFolder.filePath(u"site"_s);
    sample::WriteSampleSite(site.toStdString(), {.Records = records});
    QDir(mFolder.path()).mkdir(u"databases"_s);
    qputenv("HOME", mFolder.filePath(u"databases"_s).toUtf8());  // where the save dialog opens
    qputenv("TMPDIR", (site + u"/tmp").toUtf8());
    qputenv("XDG_CONFIG_HOME", (site + u"/config").toUtf8());
}

QStringList MadeUpSite::Databases() const {
    QStringList paths;
    const QDir folder(mFolder.filePath(u"databases"_s));
    for (const QString& name : folder.entryList({u"*.mdb"_s}, QDir::Files)) paths << folder.filePath(name);
    return paths;
}

}  // namespace driver
