; Air, weather and catastrophe.

; Riser over its whole length; ends cut off. p4: pitch that it starts from.
instr riser
  kT line 0, p3, 1
  kA = kT * kT * (kT > 0.995 ? (1 - kT) * 200 : 1)
  aN noise 1, 0
  aN2 noise 1, 0
  kC = 350 * exp(kT * 3.1)
  aL butbp aN, kC, kC * 0.7
  aR butbp aN2, kC, kC * 0.7
  kF = p4 * exp(kT * 0.6931)
  a1 vco2 0.3, kF
  a2 vco2 0.3, kF * 1.01
  a3 vco2 0.3, kF * 1.498
  aT butlp a1 + a2 + a3, 300 + 5000 * kT
  aT buthp aT, 200
  wide (aL * 1.1 + aT * 0.4) * kA * p5 * 0.35, (aR * 1.1 + aT * 0.4) * kA * p5 * 0.35, 0.2, 0
endin

; Reverse cymbal: grows and stops dead.
instr swell
  kE expseg 0.004, max(0.05, p3 - 0.012), 1, 0.012, 0.001
  aN noise 1, 0
  aR noise 1, 0
  kC line 2200, p3, 5200
  aL buthp aN, kC
  aR buthp aR, kC
  wide aL * kE * p5 * 0.22, aR * kE * p5 * 0.22, 0.1, 0
endin

; Whoosh past the listener, loudest in its middle. p6 to -p6.
instr whoosh
  kT line 0, p3, 1
  kE = sin(kT * 3.14159)
  kE = kE * kE
  aN noise 1, 0
  kC = p4 * exp(sin(kT * 3.14159) * 2.2)
  aF butbp aN, kC, kC * 0.8
  kPan = p6 * (1 - 2 * kT)
  aL = aF * kE * p5 * 0.55 * cos((kPan + 1) * 0.785398)
  aR = aF * kE * p5 * 0.55 * sin((kPan + 1) * 0.785398)
  wide aL, aR, 0.3, 0.05
endin

; Falls from p4 to the bottom over its length.
instr subdrop
  kF expon p4, p3, 28
  kE linseg 0, 0.004, 1, p3 * 0.5, 0.8, p3 * 0.5, 0
  aS oscili kE, kF, giSine
  place tanh(aS * 1.6) * p5 * 0.397, 0, 0, 0
endin

; Falling noise after a cut.
instr fall
  kT line 0, p3, 1
  aN noise 1, 0
  aR noise 1, 0
  kC = 7000 * exp(-kT * 3.4)
  kE = (1 - kT) * (1 - kT)
  aL butbp aN, kC, kC * 0.8
  aQ butbp aR, kC, kC * 0.8
  wide aL * kE * p5 * 0.35, aQ * kE * p5 * 0.35, 0.25, 0.08
endin

; Explosion: crack, roar and a long low end.
instr blast
  aN noise 1, 0
  aR noise 1, 0
  kC expseg 9000, 0.25, 2400, p3 * 0.4, 420, p3 * 0.6, 70
  kE expseg 1, 0.15, 0.75, p3 * 0.35, 0.22, p3 * 0.65, 0.001
  aL butlp aN, kC
  aQ butlp aR, kC
  kF expseg 120, 0.1, 52, p3, 30
  aS oscili kE, kF, giSine, 0.25
  aS = tanh(aS * 2)
  wide tanh(aL * kE * 1.5 + aS * 0.8) * p5 * 0.55, tanh(aQ * kE * 1.5 + aS * 0.8) * p5 * 0.55, 0.2, 0
endin

; Rumble that shakes faster and harder to its end. p7: shakes a second at the end.
instr rumble
  kT line 0, p3, 1
  aN noise 1, 0
  aR noise 1, 0
  kS lfo 0.5, 3 + p7 * kT, 0
  kA = kT * (1 + kS * kT)
  aL butlp aN, 160 + 1400 * kT * kT
  aQ butlp aR, 160 + 1400 * kT * kT
  kCut linseg 1, max(0.01, p3 - 0.01), 1, 0.01, 0
  wide tanh(aL * 2) * kA * kCut * p5 * 0.504, tanh(aQ * 2) * kA * kCut * p5 * 0.504, 0.05, 0
endin

; Wind over the roofs.
instr wind
  kE linsegr 0, p3 * 0.3, 1, 1, 0
  kC jspline 500, 0.15, 0.5
  kD jspline 0.4, 0.2, 0.7
  aN noise 1, 0
  aR noise 1, 0
  aL butbp aN, p4 + kC, 500
  aQ butbp aR, p4 * 1.1 - kC * 0.6, 500
  wide aL * kE * p5 * 0.439 * (1 + kD), aQ * kE * p5 * 0.439 * (1 - kD), 0.3, 0
endin

; Alarm that climbs an octave over its length. p7: turns a second.
instr siren
  kT line 0, p3, 1
  kL lfo 0.06, 2 + p7 * kT, 1
  kF = p4 * exp(kT * 0.6931) * (1 + kL)
  a1 vco2 0.4, kF
  a2 vco2 0.4, kF * 1.008
  kCut linseg 0, 0.02, 1, max(0.01, p3 - 0.04), 1, 0.02, 0
  aF butlp a1 + a2, 700 + 3500 * kT
  aF buthp aF, 300
  place aF * kT * kCut * p5 * 0.28, p6, 0.3, 0.2
endin
