#include "sketch/app/sketch_files.h"

#include "tools/program/answer_text.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSaveFile>

using namespace vnt::sketch;

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(SketchFiles)
};

FileProblem cannotRead(const QString& file, const QString& why)
{
    return {
        Words::tr("Cannot open %1: %2. The sketch is as it was.").arg(QDir::toNativeSeparators(file), why)};
}

} // namespace

std::variant<std::vector<Stroke>, FileProblem> readSketch(const QString& file, const Sheet& sheet,
                                                          StrokeId firstId)
{
    QFile opened(file);
    if (!opened.open(QIODevice::ReadOnly))
        return cannotRead(file, opened.errorString());
    const QByteArray content = opened.read(static_cast<qint64>(kMostAnswerBytes) + 1);
    if (opened.error() != QFile::NoError)
        return cannotRead(file, opened.errorString());
    if (static_cast<std::size_t>(content.size()) > kMostAnswerBytes)
        return cannotRead(file, Words::tr("it is larger than any sketch"));
    if (!content.trimmed().startsWith('<'))
        return cannotRead(file, Words::tr("it holds no sketch"));
    const std::string line =
        vnt::program::joined({content.constData(), static_cast<std::size_t>(content.size())});
    auto read = strokes_of_answer(line, sheet, firstId);
    if (const auto* problem = std::get_if<Problem>(&read))
        return cannotRead(file, QString::fromStdString(problem->sentence));
    return std::get<std::vector<Stroke>>(std::move(read));
}

FileProblem writeSketch(const QString& file, const std::vector<StrokePtr>& strokes, const Sheet& sheet)
{
    const std::string line = answer_of(strokes, sheet) + "\n";
    return writeWhole(file, QByteArray(line.data(), static_cast<qsizetype>(line.size())));
}

FileProblem writeWhole(const QString& file, const QByteArray& bytes)
{
    QSaveFile saved(file);
    // flush: committing alone does not notice that the last bytes found no room.
    if (saved.open(QIODevice::WriteOnly) && saved.write(bytes) == bytes.size() && saved.flush() &&
        saved.commit())
        return {};
    return {Words::tr("Cannot write %1: %2. No file was changed, and the sketch is as it was.")
                .arg(QDir::toNativeSeparators(file), saved.errorString())};
}
