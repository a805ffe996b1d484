#pragma once

#include "CEInsAutoJob.h"

#include <QByteArray>

// The job as a JSON document, members in the record's order, for the command-line program
// and for reading a job back in tests. The format is described in docs/job-json.md.
namespace CEInsAutoJobJson {

QByteArray toJson(const CEInsAutoJob& job);

} // namespace CEInsAutoJobJson
