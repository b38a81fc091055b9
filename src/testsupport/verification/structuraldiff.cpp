#include "testsupport/verification/structuraldiff.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QSet>
#include <QXmlStreamReader>

#include <memory>
#include <vector>

namespace Torvix {

namespace {

/** Collects differences, the first ones in words. */
class Differences
{
public:
    void add(const QString& path, const QString& expected, const QString& actual)
    {
        if (++m_count <= StructuralDifference::maxShown)
            m_list += QStringLiteral("%1: expected %2, found %3").arg(path, expected, actual);
    }

    QStringList take()
    {
        if (m_count > StructuralDifference::maxShown)
            m_list += QStringLiteral("... and %1 more").arg(m_count - StructuralDifference::maxShown);
        return std::move(m_list);
    }

private:
    QStringList m_list;
    int m_count = 0;
};

QString quoted(const QString& text)
{
    return QLatin1Char('\'') + text + QLatin1Char('\'');
}

const QString nothing = QStringLiteral("nothing");

struct XmlElement
{
    QString name; ///< "{namespace}local", or the local name alone
    QMap<QString, QString> attributes;
    QString text; ///< of the element itself, trimmed
    std::vector<std::unique_ptr<XmlElement>> children;
};

QString expandedName(const QStringRef& nameSpace, const QStringRef& name)
{
    return nameSpace.isEmpty() ? name.toString() : QStringLiteral("{%1}%2").arg(nameSpace, name);
}

constexpr int maxXmlDepth = 2000; ///< deeper documents are refused rather than recursed into

/** Null with the error filled when it is not well formed. */
std::unique_ptr<XmlElement> parseXml(const QByteArray& bytes, const char* which, QString* error)
{
    QXmlStreamReader reader(bytes);
    XmlElement document;
    std::vector<XmlElement*> open{&document};
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement: {
            auto element = std::make_unique<XmlElement>();
            element->name = expandedName(reader.namespaceUri(), reader.name());
            for (const QXmlStreamAttribute& attribute : reader.attributes())
                element->attributes.insert(expandedName(attribute.namespaceUri(), attribute.name()),
                                           attribute.value().toString());
            XmlElement* added = element.get();
            open.back()->children.push_back(std::move(element));
            open.push_back(added);
            if (open.size() > maxXmlDepth)
                reader.raiseError(QStringLiteral("elements are nested too deeply"));
            break;
        }
        case QXmlStreamReader::EndElement:
            open.back()->text = open.back()->text.trimmed();
            open.pop_back();
            break;
        case QXmlStreamReader::Characters:
            open.back()->text += reader.text();
            break;
        default:
            break;
        }
    }
    if (reader.hasError()) {
        *error = QStringLiteral("The %1 document is not well formed: line %2: %3")
                     .arg(QLatin1String(which), QString::number(reader.lineNumber()), reader.errorString());
        return nullptr;
    }
    return std::move(document.children.front());
}

void compareElements(const QString& path, const XmlElement& expected, const XmlElement& actual,
                     Differences* found);

void compareAttributes(const QString& path, const XmlElement& expected, const XmlElement& actual,
                       Differences* found)
{
    QMap<QString, QString> all = expected.attributes;
    for (auto it = actual.attributes.begin(); it != actual.attributes.end(); ++it)
        all.insert(it.key(), it.value());
    for (auto it = all.begin(); it != all.end(); ++it) {
        const auto wanted = expected.attributes.find(it.key());
        const auto seen = actual.attributes.find(it.key());
        const QString wantedText = wanted == expected.attributes.end() ? nothing : quoted(*wanted);
        const QString seenText = seen == actual.attributes.end() ? nothing : quoted(*seen);
        if (wantedText != seenText)
            found->add(path + QLatin1String("/@") + it.key(), wantedText, seenText);
    }
}

QString childPath(const QString& path, const XmlElement& parent, std::size_t index)
{
    int position = 1;
    for (std::size_t i = 0; i < index; ++i)
        position += parent.children[i]->name == parent.children[index]->name ? 1 : 0;
    return QStringLiteral("%1/%2[%3]").arg(path, parent.children[index]->name, QString::number(position));
}

void compareElements(const QString& path, const XmlElement& expected, const XmlElement& actual,
                     Differences* found)
{
    if (expected.name != actual.name) {
        found->add(path, QLatin1Char('<') + expected.name + QLatin1Char('>'),
                   QLatin1Char('<') + actual.name + QLatin1Char('>'));
        return;
    }
    compareAttributes(path, expected, actual, found);
    if (expected.text != actual.text)
        found->add(path + QLatin1String("/text()"), quoted(expected.text), quoted(actual.text));
    const std::size_t count = std::max(expected.children.size(), actual.children.size());
    for (std::size_t i = 0; i < count; ++i) {
        if (i >= actual.children.size())
            found->add(childPath(path, expected, i), QStringLiteral("<%1>").arg(expected.children[i]->name),
                       nothing);
        else if (i >= expected.children.size())
            found->add(childPath(path, actual, i), nothing,
                       QStringLiteral("<%1>").arg(actual.children[i]->name));
        else
            compareElements(childPath(path, expected, i), *expected.children[i], *actual.children[i], found);
    }
}

QString jsonText(const QJsonValue& value)
{
    if (value.isUndefined())
        return nothing;
    QByteArray text = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    text = text.mid(1, text.size() - 2);
    constexpr int longest = 120;
    const QString shown = QString::fromUtf8(text);
    return shown.size() > longest ? shown.left(longest) + QLatin1String("...") : shown;
}

void compareValues(const QString& path, const QJsonValue& expected, const QJsonValue& actual,
                   Differences* found)
{
    if (expected.isObject() && actual.isObject()) {
        const QJsonObject a = expected.toObject();
        const QJsonObject b = actual.toObject();
        QStringList names = a.keys();
        for (const QString& name : b.keys()) {
            if (!a.contains(name))
                names += name;
        }
        for (const QString& name : names)
            compareValues(path + QLatin1Char('.') + name, a.value(name), b.value(name), found);
    } else if (expected.isArray() && actual.isArray()) {
        const QJsonArray a = expected.toArray();
        const QJsonArray b = actual.toArray();
        const auto element = [](const QJsonArray& array, int i) {
            return i < array.size() ? array.at(i) : QJsonValue(QJsonValue::Undefined);
        };
        for (int i = 0; i < std::max(a.size(), b.size()); ++i)
            compareValues(QStringLiteral("%1[%2]").arg(path, QString::number(i)), element(a, i),
                          element(b, i), found);
    } else if (expected != actual) {
        found->add(path, jsonText(expected), jsonText(actual));
    }
}

bool parseJson(const QByteArray& bytes, const char* which, QJsonValue* value, QString* error)
{
    // Qt reads documents that are an object or an array; a bare value is read as an only element.
    QJsonParseError problem;
    const QByteArray wrapped = '[' + bytes + ']';
    const QJsonDocument document = QJsonDocument::fromJson(wrapped, &problem);
    if (problem.error == QJsonParseError::NoError && document.array().size() == 1) {
        *value = document.array().at(0);
        return true;
    }
    const int offset = std::max(0, std::min(problem.offset - 1, bytes.size()));
    const QByteArray before = bytes.left(offset);
    const QString reason = problem.error == QJsonParseError::NoError ? QStringLiteral("it is no single value")
                                                                     : problem.errorString();
    *error = QStringLiteral("The %1 document is no JSON: line %2: %3")
                 .arg(QLatin1String(which), QString::number(before.count('\n') + 1), reason);
    return false;
}

} // namespace

StructuralDifference compareXml(const QByteArray& expected, const QByteArray& actual)
{
    StructuralDifference result;
    const std::unique_ptr<XmlElement> a = parseXml(expected, "expected", &result.error);
    const std::unique_ptr<XmlElement> b = a ? parseXml(actual, "actual", &result.error) : nullptr;
    if (!a || !b)
        return result;
    Differences found;
    compareElements(QLatin1Char('/') + a->name, *a, *b, &found);
    result.differences = found.take();
    return result;
}

StructuralDifference compareJson(const QByteArray& expected, const QByteArray& actual)
{
    StructuralDifference result;
    QJsonValue a;
    QJsonValue b;
    if (!parseJson(expected, "expected", &a, &result.error) ||
        !parseJson(actual, "actual", &b, &result.error))
        return result;
    Differences found;
    compareValues(QStringLiteral("$"), a, b, &found);
    result.differences = found.take();
    return result;
}

} // namespace Torvix
