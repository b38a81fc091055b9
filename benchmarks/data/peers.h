#pragma once

#include <QString>

/** Writes the input of that kind ("csv", "xlsx", "xls"); ends the program when it cannot. */
void makeInput(const QString& kind, const QString& file);

/** The seconds of processor time that the peer of that kind took to read the file, without its own start. */
double peerSeconds(const QString& kind, const QString& file);
