#pragma once

// The library shows hosts only what they may use: every symbol is hidden unless its class or
// function is marked TABULOR_EXPORT. That is the public interface (the installed headers)
// and what Tabulor's own libraries beside it (printer output, the designer windows) call.
#define TABULOR_EXPORT __attribute__((visibility("default")))
