# cmake -DOUTPUT=file.cpp -DPARSER=acorn.js -DREWRITER="a.js;b.js" -DPRELUDE="c.js;d.js" -P embed.cmake
# Writes the functions of embedded.h.

function(array_of name files result version)
  set(hex "")
  set(sums "")
  foreach(file IN LISTS files)
    file(READ "${file}" content HEX)
    file(SHA1 "${file}" sum)
    string(APPEND hex "${content}0a")
    string(APPEND sums "${sum}")
  endforeach()
  string(REGEX REPLACE "(..)" "0x\\1," bytes "${hex}")
  string(REPEAT "0x..," 16 row)
  string(REGEX REPLACE "(${row})" "\\1\n" bytes "${bytes}")
  set(${result} "constexpr unsigned char ${name}[] = {\n${bytes}0};\n" PARENT_SCOPE)
  set(${version} "${${version}}${sums}" PARENT_SCOPE)
endfunction()

set(version "")
array_of(parser "${PARSER}" parserArray version)
array_of(rewriter "${REWRITER}" rewriterArray version)
array_of(prelude "${PRELUDE}" preludeArray version)
string(SHA1 version "${version}")

file(WRITE "${OUTPUT}" "// Written by embed.cmake.
#include \"engine/rewriting/embedded.h\"

namespace {

template <int size> QByteArray bytes(const unsigned char (&array)[size])
{
    return QByteArray::fromRawData(reinterpret_cast<const char*>(array), size - 1);
}

${parserArray}
${rewriterArray}
${preludeArray}
} // namespace

namespace KJS::Rewriting {

QByteArray embeddedParser() { return bytes(parser); }
QByteArray embeddedRewriter() { return bytes(rewriter); }
QByteArray embeddedPrelude() { return bytes(prelude); }
QByteArray embeddedVersion() { return QByteArrayLiteral(\"${version}\"); }

} // namespace KJS::Rewriting
")
