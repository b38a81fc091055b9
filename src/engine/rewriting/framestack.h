#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <cstdint>
#include <memory>

namespace KJS::Rewriting {

/**
 * The script frames that are entered at this moment, in C++ memory that rewritten script writes
 * through typed arrays. Reading it never calls script.
 *
 * Frames are counted from 1, the outermost, to depth(), the running one. Program, module and eval
 * code are frames like functions. A recursion deeper than the capacity is harmless: typed arrays
 * ignore a store outside their range, and what is asked of such a frame is answered by 0.
 */
class FrameStack
{
public:
    /** Far more than the engine's own stack limit (5 MB) has room for. */
    static constexpr int capacity = 1 << 18;
    /** The first words of the slot array are control words; frame 1 lies behind them. */
    static constexpr int base = 16;

    /** Indices of the control words. Script knows them as numbers, see prelude.js. */
    enum Word {
        DepthWord = 0,    ///< base + number of entered frames
        FlagWord = 1,     ///< not 0: statements and frames call the hooks
        InFlightWord = 2, ///< 1 while the last exception that was reported travels
        PendingWord = 3,  ///< 1 while a C++ exception travels through script
    };

    FrameStack();

    int depth() const { return word(DepthWord) - base; }
    void setDepth(int depth) { word(DepthWord) = base + depth; }

    /** Line of the running statement of a frame, from 1; 0 before the first statement. */
    int line(int frame) const { return slot(frame) >> 1; }
    /** Whether that statement lies in a try block with a catch of the same function. */
    bool insideTry(int frame) const { return (slot(frame) & 1) != 0; }
    /** Key into SourceTable::function; 0 where a frame has none. */
    int functionId(int frame) const { return inRange(frame) ? m_functions[base + frame] : 0; }

    /** Enters a frame from C++ (program and module code). Returns its number. */
    int push(int functionId);
    void setLine(int frame, int line);

    int32_t& word(Word index) { return m_slots[index]; }
    int32_t word(Word index) const { return m_slots[index]; }

    /** New typed arrays over the memory; this object must outlive the context. */
    JSObjectRef makeSlotArray(JSContextRef context);
    JSObjectRef makeFunctionArray(JSContextRef context);

private:
    struct Free
    {
        void operator()(int32_t* memory) const;
    };
    static bool inRange(int frame) { return frame > 0 && frame < capacity - base; }
    int32_t slot(int frame) const { return inRange(frame) ? m_slots[base + frame] : 0; }

    // calloc'ed and never resized: pages that no frame reaches cost nothing
    std::unique_ptr<int32_t[], Free> m_slots;
    std::unique_ptr<int32_t[], Free> m_functions;
};

} // namespace KJS::Rewriting
