// Visibility of the shared library's interface: everything is hidden but what carries QUORVEL_API.
#ifndef QUORVEL_EXPORT_H
#define QUORVEL_EXPORT_H

#define QUORVEL_API __attribute__((visibility("default")))

#endif
