; What every stem starts with. p4 pitch in Hz, p5 velocity 0..1, p6 pan -1..1; p7 and up are the instrument's own.
sr = 44100
ksmps = 32
nchnls = 2
0dbfs = 1
seed 20111

gaRevL init 0
gaRevR init 0
gaDelL init 0
gaDelR init 0
giSine ftgen 0, 0, 16384, 10, 1

; Stereo signal to the stem and its sends.
opcode wide, 0, aaii
  aL, aR, iRev, iDel xin
  outs aL, aR
  gaRevL = gaRevL + aL * iRev
  gaRevR = gaRevR + aR * iRev
  gaDelL = gaDelL + aL * iDel
  gaDelR = gaDelR + aR * iDel
endop

; Mono signal, equal-power pan, to the stem and its sends.
opcode place, 0, aiii
  aSig, iPan, iRev, iDel xin
  iAng = (iPan + 1) * 0.7853981634
  wide aSig * cos(iAng), aSig * sin(iAng), iRev, iDel
endop
