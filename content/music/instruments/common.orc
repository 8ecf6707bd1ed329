; What every stem starts with. p4 pitch in Hz, p5 velocity 0..1, p6 pan -1..1; p7 and up are the instrument's own
; and may be left out: 0 then stands for the usual value.
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

; Stereo signal to the stem and, by these parts, to the room and the echo.
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

; One ringing partial: Hz, level, seconds to -60 dB. Silent where it would alias.
opcode partial, a, iii
  iHz, iLevel, iDecay xin
  iTop = (iHz < 19000 ? iLevel : 0.000001)
  kE expon iTop, iDecay, iTop * 0.001
  aOut oscili kE, min(iHz, 19000), giSine
  xout aOut
endop

; Vowel filter: 0 is "oo", 1 is "ah".
opcode vowel, a, ak
  aIn, kOpen xin
  a1 butbp aIn, 330 + 400 * kOpen, 110
  a2 butbp aIn, 720 + 420 * kOpen, 130
  a3 butbp aIn, 2450 + 100 * kOpen, 240
  a4 butbp aIn, 3300, 400
  xout a1 * 1.3 + a2 * 0.9 + a3 * (0.16 + 0.3 * kOpen) + a4 * (0.06 + 0.14 * kOpen)
endop
