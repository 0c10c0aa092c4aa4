// A small made-up site in a folder of its own, with the environment that leads the program to it.
#pragma once

#include <QString>
#include <QTemporaryDir>
#include <cstdint>

namespace driver {

class MadeUpSite {
  public:
    /// Writes about records records and sets TMPDIR, XDG_CONFIG_HOME and HOME. Removed at the end.
    explicit MadeUpSite(std::int64_t records);

    /// The path of a file in the folder for databases.
    QString Database(const QString& name) const { return mFolder.filePath(u"databases/" + name); }

    /// The databases that stand there.
    QStringList Databases() const;

  private:
    QTemporaryDir mFolder;
};

}  // namespace driver
