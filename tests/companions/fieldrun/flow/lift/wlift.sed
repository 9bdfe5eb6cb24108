# The wells' pressures are told at the depth of the table.
/ 1\*   OIL .* SHUT /s/  1\*   OIL/1836   OIL/
