; Struck and plucked sounds.

; Electric piano: two-operator FM with a bell that fades first.
instr epiano
  kE expsegr 1, 0.9, 0.45, 3, 0.05, 0.25, 0.001
  kI expseg 2.2 * p5, 0.3, 0.9 * p5, 3, 0.2
  aM oscili kI * p4, p4, giSine
  kT expseg 1.8 * p5, 0.06, 0.15, 1, 0.01
  aT oscili p4 * kT, p4 * 14, giSine
  aC oscili 1, p4 + aM + aT, giSine
  aB partial p4 * 4, 0.14 * p5, 0.5
  kL lfo 0.14, 4.4
  kA linseg 0, 0.002, 1, 1, 1
  iAng = (p6 + 1) * 0.7853981634
  aO = (aC + aB) * kE * kA * p5 * 0.155
  wide aO * cos(iAng) * (1 + kL), aO * sin(iAng) * (1 - kL), 0.18, 0.06
endin

; Pluck for arpeggios. p7: brightness 0..1.
instr pluck
  iBright = (p7 == 0 ? 0.5 : p7)
  kE expsegr 1, 0.3, 0.1, 1, 0.01, 0.1, 0.001
  kA linseg 0, 0.002, 1, 1, 1
  a1 vco2 0.5, p4
  a2 vco2 0.5, p4 * 1.006, 2, 0.35
  kC expseg 1, 0.15, 0.1, 1, 0.05
  aF moogladder a1 + a2, 200 + 7000 * kC * iBright, 0.3
  aF buthp aF, 180
  place aF * kE * kA * p5 * 0.854, p6, 0.18, 0.22
endin

instr musicbox
  p3 = 2
  a1 partial p4, 0.6, 1.7
  a2 partial p4 * 3.01, 0.18, 0.7
  a3 partial p4 * 5.4, 0.1, 0.3
  a4 partial p4 * 0.5, 0.06, 0.5
  aN noise 0.12, 0
  kN expseg 1, 0.006, 0.001, 1, 0.001
  aN buthp aN * kN, 3000
  place (a1 + a2 + a3 + a4 + aN) * p5 * 0.4, p6, 0.3, 0.18
endin

instr bell
  p3 = 5
  a1 partial p4, 0.35, 4
  a2 partial p4 * 0.5, 0.2, 5
  a3 partial p4 * 1.19, 0.22, 3
  a4 partial p4 * 1.5, 0.12, 2.4
  a5 partial p4 * 2, 0.25, 2
  a6 partial p4 * 2.66, 0.14, 1.2
  a7 partial p4 * 4.1, 0.1, 0.6
  aN noise 0.2, 0
  kN expseg 1, 0.01, 0.001, 1, 0.001
  place (a1 + a2 + a3 + a4 + a5 + a6 + a7 + aN * kN) * p5 * 0.36, p6, 0.3, 0.08
endin

instr marimba
  p3 = 0.8
  a1 partial p4, 0.7, 0.6
  a2 partial p4 * 3.93, 0.4, 0.2
  a3 partial p4 * 9.2, 0.25, 0.08
  aN noise 0.25, 0
  kN expseg 1, 0.006, 0.001, 1, 0.001
  place (a1 + a2 + a3 + butlp(aN * kN, 3000)) * p5 * 0.706, p6, 0.14, 0.1
endin
