#pragma once

// The library's per-thread state is small and touched per element or value. A shared library's
// thread-locals otherwise go through __tls_get_addr on every access; the initial-exec model
// reads them at a fixed offset. The few hundred bytes fit the space the loader keeps for
// libraries opened later, so loading this one with dlopen still works.
#define QVXML_FAST_TLS __attribute__((tls_model("initial-exec")))
