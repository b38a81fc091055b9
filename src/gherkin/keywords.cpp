#include "gherkin/keywords.h"

#include "gherkin/feature.h"

namespace Gherkin {

namespace {

struct KeywordList
{
    const char* language;
    Keyword keyword;
    const char* words; // separated by '|'; those of steps with the blank that belongs to them
};

constexpr KeywordList keywordLists[] = {
    {"en", Keyword::Feature, "Feature|Business Need|Ability"},
    {"en", Keyword::Background, "Background"},
    {"en", Keyword::Rule, "Rule"},
    {"en", Keyword::Scenario, "Scenario|Example"},
    {"en", Keyword::Outline, "Scenario Outline|Scenario Template"},
    {"en", Keyword::Examples, "Examples|Scenarios"},
    {"en", Keyword::Given, "Given "},
    {"en", Keyword::When, "When "},
    {"en", Keyword::Then, "Then "},
    {"en", Keyword::And, "And |But |* "},

    {"de", Keyword::Feature, "Funktionalität|Funktion"},
    {"de", Keyword::Background, "Grundlage|Hintergrund|Voraussetzungen|Vorbedingungen"},
    {"de", Keyword::Rule, "Rule|Regel"},
    {"de", Keyword::Scenario, "Szenario|Beispiel"},
    {"de", Keyword::Outline, "Szenariogrundriss|Szenarien"},
    {"de", Keyword::Examples, "Beispiele"},
    {"de", Keyword::Given, "Angenommen |Gegeben sei |Gegeben seien "},
    {"de", Keyword::When, "Wenn "},
    {"de", Keyword::Then, "Dann "},
    {"de", Keyword::And, "Und |Aber |* "},

    {"es", Keyword::Feature, "Característica|Necesidad del negocio|Requisito"},
    {"es", Keyword::Background, "Antecedentes"},
    {"es", Keyword::Rule, "Regla|Regla de negocio"},
    {"es", Keyword::Scenario, "Escenario|Ejemplo"},
    {"es", Keyword::Outline, "Esquema del escenario"},
    {"es", Keyword::Examples, "Ejemplos"},
    {"es", Keyword::Given, "Dado |Dada |Dados |Dadas "},
    {"es", Keyword::When, "Cuando "},
    {"es", Keyword::Then, "Entonces "},
    {"es", Keyword::And, "Y |E |Pero |* "},

    {"fr", Keyword::Feature, "Fonctionnalité"},
    {"fr", Keyword::Background, "Contexte"},
    {"fr", Keyword::Rule, "Règle"},
    {"fr", Keyword::Scenario, "Scénario|Exemple"},
    {"fr", Keyword::Outline, "Plan du scénario|Plan du Scénario"},
    {"fr", Keyword::Examples, "Exemples"},
    {"fr", Keyword::Given,
     "Soit |Sachant que |Sachant qu'|Sachant |Etant donné que |Etant donné qu'|Etant donné |"
     "Étant donné que |Étant donné qu'|Étant donné |Étant donnée |Étant donnés |Étant données "},
    {"fr", Keyword::When, "Quand |Lorsque |Lorsqu'"},
    {"fr", Keyword::Then, "Alors |Donc "},
    {"fr", Keyword::And, "Et que |Et qu'|Et |Mais que |Mais qu'|Mais |* "},
};

} // namespace

QStringList languages()
{
    QStringList codes;
    for (const KeywordList& list : keywordLists) {
        const QString code = QString::fromLatin1(list.language);
        if (!codes.contains(code))
            codes += code;
    }
    return codes;
}

bool isKnownLanguage(const QString& language)
{
    return languages().contains(language);
}

bool findKeyword(const QString& language, const QString& line, KeywordMatch& match)
{
    match.length = 0;
    for (const KeywordList& list : keywordLists) {
        if (language != QLatin1String(list.language))
            continue;
        for (QString word : QString::fromUtf8(list.words).split('|')) {
            if (!isStep(list.keyword))
                word += ':';
            // A step may also consist of its keyword alone, the blank of which was trimmed.
            const bool found = line.startsWith(word) || (isStep(list.keyword) && line == word.trimmed());
            if (found && word.size() > match.length)
                match = {list.keyword, word.size()};
        }
    }
    return match.length > 0;
}

} // namespace Gherkin
