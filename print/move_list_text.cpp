#include "print/move_list_text.h"
