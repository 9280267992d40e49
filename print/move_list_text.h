// The text of a printed moves list, and its pages.
#pragma once
