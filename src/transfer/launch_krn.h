#pragma once

#include "common/session.h"

namespace zenvora::transfer {

/// Starts KRN from the directory that the key APPDIR, section DIRECTORIES, of KRN.INI in the Appraise
/// directory names: "krn32\krn.exe" there, else "krn.exe". Neither: nothing happens. Does not wait for it to
/// come up. Off Windows a program that lies in a Wine prefix is started by Wine in that prefix. Faults: those
/// of reading the settings.
void LaunchKrn(common::Session& session);

}  // namespace zenvora::transfer
