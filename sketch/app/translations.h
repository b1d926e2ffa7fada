// The words of the program in the user's language.
#pragma once

#include <QString>

// language: "en", "de", or empty for the desktop's. To be called before the first window is made. English when there are
// no words in that language.
void installTranslations(const QString& language);
