#pragma once

// Everything is hidden by default (-fvisibility=hidden); what callers touch carries QVXML_API.
#if defined(QVXML_STATIC)
#define QVXML_API
#else
#define QVXML_API __attribute__((visibility("default")))
#endif
