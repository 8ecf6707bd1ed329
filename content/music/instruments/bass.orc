; Bass: two saws and a sub through a plucked filter. p7: brightness 0..1.
instr bass
  kE linsegr 0, 0.004, 1, 0.08, 0.8, 0.05, 0
  a1 vco2 0.4, p4
  a2 vco2 0.4, p4 * 1.004
  aS oscili 0.55, p4, giSine
  kC expseg 1, 0.25, 0.25, 2, 0.12
  aF moogladder a1 + a2, 120 + p4 + 2600 * kC * p7 * p5, 0.25
  aOut = tanh((aF + aS) * 1.2) * kE * p5 * 0.5
  place aOut, 0, 0, 0
endin
