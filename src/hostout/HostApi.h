// How the classes and functions of the host's libraries are declared: everything else of the project is built
// with hidden visibility.
#pragma once

#define HOST_API __attribute__((visibility("default")))
