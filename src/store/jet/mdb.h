// The library for pages and rows of the Jet format. Its header takes that of glib into extern "C", where templates
// can't be: that one comes first.
#pragma once

#include <glib.h>

#include <mdbtools.h>
