#include "sketch/app/translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace {

const QString kFolder = QStringLiteral(":/translations");
const QString kName = QStringLiteral("vant-sketch");

bool try_install(const QString& language)
{
    auto* const own = new QTranslator(QCoreApplication::instance());
    if (!own->load(kName + "_" + language, kFolder))
        return false;
    auto* const qt = new QTranslator(QCoreApplication::instance());
    if (qt->load("qtbase_" + language, QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(qt);
    QCoreApplication::installTranslator(own);
    return true;
}

} // namespace

void installTranslations(const QString& language)
{
    QStringList wanted = QLocale::system().uiLanguages();
    if (!language.isEmpty()) {
        QLocale::setDefault(QLocale(language));
        wanted = {language};
    }
    for (const QString& each : wanted) {
        if (try_install(each.section('-', 0, 0)))
            return;
    }
    try_install(QStringLiteral("en")); // which has the plurals
}
