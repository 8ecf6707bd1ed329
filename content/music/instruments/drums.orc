; Kick: a falling sine with a click; the attack is on the sample.
instr kick
  p3 = 0.45
  kF expseg 260, 0.018, 95, 0.08, 52, 0.3, 44
  kE expseg 1, 0.12, 0.6, 0.3, 0.001
  aB oscili kE * p5, kF, giSine, 0.25
  aN noise p5 * 0.5, 0
  kC expseg 1, 0.006, 0.001, 1, 0.001
  aC buthp aN * kC, 1800
  aOut = tanh((aB * 1.3 + aC) * 1.4) * 0.75
  place aOut, 0, 0, 0
endin

instr snare
  p3 = 0.35
  kF expseg 320, 0.02, 195, 0.3, 170
  kE expseg 1, 0.07, 0.1, 0.1, 0.001
  aB oscili kE, kF, giSine
  aN noise 1, 0
  aN butbp aN, 2600, 3600
  kN expseg 1, 0.05, 0.4, 0.16, 0.001
  aOut = tanh((aB * 0.7 + aN * kN * 1.4) * p5 * 1.3) * 0.55
  place aOut, p6, 0.12, 0
endin

; p7: decay in seconds.
instr hat
  iDec = p7
  p3 = iDec + 0.02
  aN noise 1, 0
  aM vco2 0.3, 8430, 10
  aN buthp aN + aM, 7200
  kE expseg 1, iDec, 0.001
  place aN * kE * p5 * 0.24, p6, 0.04, 0
endin

instr crash
  p3 = 2.6
  aN noise 1, 0
  aA buthp aN, 3500
  kE expseg 1, 0.2, 0.4, 2.3, 0.001
  aL delay aA, 0.0007
  wide aA * kE * p5 * 0.22, aL * kE * p5 * 0.22, 0.2, 0
endin

; Hit: low boom with a bright crack, for the cuts.
instr hit
  p3 = 1.6
  kF expseg 170, 0.04, 60, 1.5, 33
  kE expseg 1, 0.3, 0.5, 1.3, 0.001
  aB oscili kE, kF, giSine, 0.25
  aN noise 1, 0
  kN expseg 1, 0.05, 0.2, 0.6, 0.001
  aN tone aN * kN, 5000
  aOut = tanh((aB * 1.2 + aN * 0.6) * 1.3) * p5 * 0.7
  place aOut, 0, 0.25, 0
endin
