// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

/**
 * Takes the certificates of a PEM file for authorities, beside the system's. A file that cannot be
 * read or holds none changes nothing and is a line in the log. Before the first request; GUI
 * thread.
 */
void trustCertificates(const QString &file);
