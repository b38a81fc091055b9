#pragma once

#include "shared/base/sharedptr.h"

#include <QByteArray>
#include <QString>
#include <string>
#include <string_view>
#include <vector>

namespace Torvix {

/** A piece of a UTF-8 text. A byte-order mark that it begins with is a character like others. */
QString textFromUtf8(std::string_view piece);

/**
 * The cells of a whole table as slices of a few UTF-8 buffers. A table of a million rows is read and
 * held this way in two allocations; a cell becomes a QString when somebody asks for it.
 *
 * A slice lies in the base, which is the text of the file itself, or in the additions, where texts go
 * that do not stand in the file as they are to be read.
 */
class PackedCells : public Shared
{
public:
    struct Slice
    {
        quint32 start = 0; /**< the top bit tells the additions from the base */
        quint32 length = 0;
    };

    /** No buffer may be longer than this many bytes. */
    static constexpr std::size_t MaxBytes = (std::size_t(1) << 31) - 1;

    explicit PackedCells(QByteArray base) : m_base(std::move(base)) {}

    const QByteArray& base() const { return m_base; }

    /** The slice of a text that lies inside base(), or just at its end. */
    Slice inBase(std::string_view text) const
    {
        return {static_cast<quint32>(text.data() - m_base.constData()), static_cast<quint32>(text.size())};
    }
    /** Copies a text to the additions. Past MaxBytes of them the text is lost and the slice empty. */
    Slice addition(std::string_view text);

    void reserve(std::size_t cells) { m_cells.reserve(cells); }
    void append(Slice cell) { m_cells.push_back(cell); }
    void appendEmpty(std::size_t count) { m_cells.resize(m_cells.size() + count); }
    std::size_t count() const { return m_cells.size(); }

    /** The text of a cell by its number among all; never a null string. */
    QString text(std::size_t cell) const;

private:
    static constexpr quint32 AdditionBit = quint32(1) << 31;

    QByteArray m_base;
    std::string m_additions;
    std::vector<Slice> m_cells;
};

} // namespace Torvix
