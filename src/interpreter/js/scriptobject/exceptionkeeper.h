#pragma once

#include "engine/execstate.h"
#include "engine/value.h"

namespace Torvix {

/** Puts the exception of a state back when a question was asked that may itself have raised one. */
class ExceptionKeeper
{
public:
    explicit ExceptionKeeper(KJS::ExecState* exec) : m_exec(exec), m_exception(exec->exception()) {}
    ExceptionKeeper(const ExceptionKeeper&) = delete;
    ExceptionKeeper& operator=(const ExceptionKeeper&) = delete;
    ~ExceptionKeeper() { m_exec->setException(m_exception); }

private:
    KJS::ExecState* m_exec;
    KJS::Value m_exception;
};

} // namespace Torvix
