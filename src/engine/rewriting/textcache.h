#pragma once

#include "engine/rewriting/rewriter.h"

#include <QByteArray>
#include <QString>

#include <memory>

namespace KJS::Rewriting {

/**
 * Rewritten texts on disk, one file a key. A file appears whole (it is written beside and renamed)
 * and carries a checksum; whatever cannot be read counts as missing, and what cannot be written is
 * left out silently: the cache only saves time.
 */
class TextCache
{
public:
    /** `$XDG_CACHE_HOME/torvix/scripts`, or `~/.cache/torvix/scripts`. */
    static QString defaultFolder();

    explicit TextCache(const QString& folder = defaultFolder()) : m_folder(folder) {}

    std::shared_ptr<const RewrittenText> find(const QByteArray& key) const;
    void store(const QByteArray& key, const RewrittenText& text) const;

    /** Deletes the older half when there are more than `limit` files. */
    void prune(int limit) const;

private:
    QString fileOf(const QByteArray& key) const;
    QString m_folder;
};

} // namespace KJS::Rewriting
