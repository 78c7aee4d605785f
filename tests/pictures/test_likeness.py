"""What the measure of likeness sees, and what it overlooks: pictures of the window, spoilt on purpose."""
import numpy
import pytest

import likeness
import png
from window import REFERENCES

# Where things are in the picture of the dashboard: top, bottom, left, right.
