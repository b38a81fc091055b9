#include "engine/rewriting/rewriter.h"

#include "engine/rewriting/embedded.h"
#include "engine/rewriting/textcache.h"
#include "engine/rewriting/toolcontext.h"

#include <QCryptographicHash>
#include <QHash>
#include <QScopedValueRollback>

extern "C" {
unsigned jsc_get_major_version(void);
unsigned jsc_get_minor_version(void);
unsigned jsc_get_micro_version(void);
}

namespace KJS::Rewriting {

namespace {

constexpr int memoryLimit = 256;       // texts
constexpr int memoryTextLimit = 65536; // units of a text that is kept in memory
constexpr int diskLimit = 1000;        // files

QByteArray cacheKey(const QString& text, SourceKind kind, Flavour flavour)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    const unsigned about[] = {jsc_get_major_version(), jsc_get_minor_version(), jsc_get_micro_version(),
                              static_cast<unsigned>(kind), static_cast<unsigned>(flavour)};
    hash.addData(embeddedVersion());
    hash.addData("format 1"); // of RewrittenText and TextCache
    hash.addData(reinterpret_cast<const char*>(about), sizeof about);
    hash.addData(reinterpret_cast<const char*>(text.constData()),
                 text.size() * static_cast<int>(sizeof(QChar)));
    return hash.result();
}

/** Overwrites a place of fixed width with a number; the rest becomes spaces. */
void fill(QString* code, int at, int width, int number)
{
    QString digits = QString::number(number).leftJustified(width);
    std::copy(digits.constBegin(), digits.constEnd(), code->begin() + at);
}

} // namespace

QString RewrittenText::instantiate(int depth, int firstFunctionId) const
{
    constexpr int functionDigits = 6;
    QString instance = code;
    instance.detach();
    const int depthWidth = prefix.size() + 3, functionWidth = prefix.size() + 1 + functionDigits;
    for (int at = instance.indexOf(prefix); at >= 0; at = instance.indexOf(prefix, at + prefix.size())) {
        const QStringView place = QStringView(instance).mid(at + prefix.size());
        if (place.startsWith(QLatin1String("D__"))) {
            fill(&instance, at, depthWidth, depth);
        } else if (place.startsWith(QLatin1Char('F'))) {
            bool ok = false;
            const int local = place.mid(1, functionDigits).toInt(&ok);
            if (ok)
                fill(&instance, at, functionWidth, firstFunctionId + local);
        }
    }
    return instance;
}

class Rewriter::Private
{
public:
    ToolContext& tool()
    {
        if (!toolContext) {
            toolContext = std::make_unique<ToolContext>(group);
            disk.prune(diskLimit);
        }
        return *toolContext;
    }

    JSContextGroupRef group = nullptr;
    SourceTable sources;
    TextCache disk;
    std::unique_ptr<ToolContext> toolContext;
    bool isBusy = false;
    QHash<QByteArray, std::shared_ptr<const RewrittenText>> memory;
};

Rewriter::Rewriter(JSContextGroupRef group) : d(std::make_unique<Private>())
{
    d->group = JSContextGroupRetain(group);
}

Rewriter::~Rewriter()
{
    d->toolContext.reset();
    JSContextGroupRelease(d->group);
}

JSContextGroupRef Rewriter::group() const
{
    return d->group;
}

SourceTable& Rewriter::sources()
{
    return d->sources;
}

std::shared_ptr<const RewrittenText> Rewriter::rewrite(const QString& text, SourceKind kind, Flavour flavour)
{
    const QByteArray key = cacheKey(text, kind, flavour);
    if (auto known = d->memory.value(key))
        return known;
    // what scripts make up while they run would litter the disk
    const bool isFile = kind == SourceKind::Script || kind == SourceKind::Module;
    std::shared_ptr<const RewrittenText> rewritten;
    if (isFile)
        rewritten = d->disk.find(key);
    if (!rewritten) {
        const QScopedValueRollback<bool> busy(d->isBusy, true);
        rewritten = d->tool().rewrite(text, kind, flavour);
        if (rewritten && isFile)
            d->disk.store(key, *rewritten);
    }
    if (rewritten && text.size() <= memoryTextLimit) {
        if (d->memory.size() >= memoryLimit)
            d->memory.clear();
        d->memory.insert(key, rewritten);
    }
    return rewritten;
}

void Rewriter::setCacheFolder(const QString& folder)
{
    d->disk = TextCache(folder);
}

QString Rewriter::withoutModuleSyntax(const QString& text, QString* parserMessage, int* parserLine)
{
    const QScopedValueRollback<bool> busy(d->isBusy, true);
    return d->tool().withoutModuleSyntax(text, parserMessage, parserLine);
}

bool Rewriter::isBusy() const
{
    return d->isBusy;
}

bool Rewriter::toolLoaded() const
{
    return d->toolContext != nullptr;
}

} // namespace KJS::Rewriting
