#include <QIODevice>
#include <QMap>
#include <QString>
#include <QTextStream>

#include "benchmarks/floors.h"
#include "benchmarks/shared_work.h"

namespace Oxa_1_1::bench
{

namespace
{

const std::string QT = "Qt";

QString text(const std::string& bytes) { return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size())); }

void addMaps()
{
    QMap<QString, int> filled;
    QList<QString> names;
    QList<QString> others;
    for (const std::string& name : namesSample())
    {
        names.push_back(text(name));
        others.push_back(text(changedCase(name)));
        filled.insert(names.back().toCaseFolded(), 1);
    }
    add(
        work::MAP_INSERT, QT,
        [names]
        {
            QMap<QString, int> map;
            for (const QString& name : names) map.insert(name.toCaseFolded(), 1);
            keep(map);
        },
        static_cast<double>(names.size()));
    add(
        work::MAP_FIND, QT,
        [filled, others]
        {
            for (const QString& name : others) keep(filled.constFind(name.toCaseFolded()));
        },
        static_cast<double>(names.size()));
}

[[maybe_unused]] const bool registered = []
{
    add(work::FROM_UTF8_TOLD, QT, [bytes = asciiSample(32)] { keep(text(bytes)); });
    addUtf8(QT, text, [](const QString& string) { return string.toUtf8(); });
    addMaps();
    add(
        work::BUILD_LIST, QT,
        [name = QStringLiteral("position"), values = doublesSample()]
        {
            QString list;
            for (int i = 0; i < 100; ++i)
            {
                const double value = values[static_cast<std::size_t>(i)];
                list.append(name).append(u' ').append(QString::number(i)).append(u' ');
                list.append(QString::number(value, 'g', floors::precisionOf(value)));
            }
            keep(list);
        },
        100);
    add(
        work::READ_INTS, "QTextStream",
        [numbers = text(numbersSample())]() mutable
        {
            QTextStream stream(&numbers, QIODevice::ReadOnly);
            int value = 0;
            for (int i = 0; i < 1000; ++i)
            {
                stream >> value;
                keep(value);
            }
        },
        1000);
    const QString haystack = QString::fromStdU16String(haystackSample());
    add(work::FIND_UNIT, QT, [haystack] { keep(haystack.indexOf(u'#')); });
    add(work::FIND_TEXT, QT,
        [haystack, needle = QString::fromUtf16(NEEDLE.data())] { keep(haystack.indexOf(needle)); });
    const std::string line = asciiSample(64);
    add(work::COMPARE, QT,
        [a = text(line), b = text(changedCase(line))] { keep(QString::compare(a, b, Qt::CaseInsensitive)); });
    add(work::ESCAPE, QT,
        [string = text(escapeSample())]
        {
            QString escaped = string;
            escaped.replace(QStringLiteral("\\"), QStringLiteral("\\\\"))
                .replace(QStringLiteral("\n"), QStringLiteral("\\n"))
                .replace(QStringLiteral("\r"), QStringLiteral("\\r"))
                .replace(QStringLiteral("\""), QStringLiteral("\\\""));
            keep(escaped);
        });
    // Qt shares texts; detached, the copy is one.
    addCopyAndMove(QT, QString::fromUtf16(SEVEN.data()),
                   [](const QString& string)
                   {
                       QString copy = string;
                       copy.detach();
                       return copy;
                   });
    return true;
}();

}  // namespace

}  // namespace Oxa_1_1::bench
