#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QStringList>

#include "benchmarks/contest.h"
#include "benchmarks/file_samples.h"
#include "benchmarks/path_samples.h"

namespace Oxa_1_1::bench
{

namespace
{

const std::string QT = "Qt";

QString text(const std::string& path) { return QString::fromStdString(path); }

QStringList listed(QDirIterator iterator)
{
    QStringList found;
    while (iterator.hasNext()) found.push_back(iterator.next());
    return found;
}

void copyTree(const QString& source, const QString& target)
{
    check(QDir().mkpath(target), "mkpath");
    QDirIterator iterator(source, QDir::AllEntries | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (iterator.hasNext())
    {
        const QString from = iterator.next();
        const QString to = target + from.mid(source.size());
        check(iterator.fileInfo().isDir() ? QDir().mkpath(to) : QFile::copy(from, to), "copy");
    }
}

[[maybe_unused]] const bool registered = []
{
    add(work::PARSE_PATH, QT, [path = text(UNIX_PATH)] { keep(QDir::cleanPath(path)); });
    add(work::MAKE_RELATIVE, QT,
        [path = text(UNIX_FOLDER), reference = QDir(text(UNIX_REFERENCE))] { keep(reference.relativeFilePath(path)); });
    addOn(work::LIST_FOLDER, QT, largeFolder,
          [](const FileSample& sample)
          { keep(listed(QDirIterator(text(sample.path), {QStringLiteral("*.txt")}, QDir::Files))); });
    addOn(work::LIST_TREE, QT, largeTree,
          [](const FileSample& sample)
          { keep(listed(QDirIterator(text(sample.path), QDir::Files, QDirIterator::Subdirectories))); });
    addOnFresh(work::COPY_LARGE, QT, largeCopy,
               [](const CopySample& sample) { check(QFile::copy(text(sample.source), text(sample.target)), "copy"); });
    addOnFresh(work::COPY_SMALL, QT, smallCopies,
               [](const CopySample& sample) { copyTree(text(sample.source), text(sample.target)); });
    addOnFresh(work::REMOVE_SMALL, QT, doomedTree,
               [](const FileSample& sample) { check(QDir(text(sample.path)).removeRecursively(), "remove"); });
    return true;
}();

}  // namespace

}  // namespace Oxa_1_1::bench
