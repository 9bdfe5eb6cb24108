# The deck of the example under the tables of LIFT.VFP, for a few report times.
/^WELLDIMS/i VFPPDIMS\
 9 9 9 9 9 9 /\
VFPIDIMS\
 9 9 9 /
/^WELSPECS/i INCLUDE\
 'LIFT.VFP' /
/^FOPR/i WTHP\
/\
WBHP\
/\
WOPR\
/\
WWPR\
/\
WGPR\
/\
WOIR\
/\
WWIR\
/\
WGIR\
/\
WGLIR\
/
s|20000 4\* 1000 /|20000 4* 1000 1* 1 /|
s|100000 1\* 9014 /|100000 1* 9014 1* 2 /|
s|1 FEB 2025 /|1 JAN 2016 /\
1 JAN 2017 /\
1 JAN 2018 /\
1 JAN 2019 /|
