// Sculpts the solids of the pictures: signed distance fields, meshed by surface nets.
//
//   sculpt SHAPE CELL FILE
//
// CELL is the edge of a grid cell in units of the shape (a head is about two units tall). FILE gets
// two int32 counts, vertices and quads, then float32 xyz per vertex and four int32 indices per
// quad. The head looks along +z with +y up; negative distance is inside.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace {

struct vec {
    double x, y, z;
};

vec operator+(vec a, vec b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
vec operator-(vec a, vec b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
vec operator*(vec a, double s) {
    return {a.x * s, a.y * s, a.z * s};
}
vec operator/(vec a, vec b) {
    return {a.x / b.x, a.y / b.y, a.z / b.z};
}
double dot(vec a, vec b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
double length(vec a) {
    return std::sqrt(dot(a, a));
}
double clamp(double x, double low, double high) {
    return std::min(std::max(x, low), high);
}

double smoothstep(double low, double high, double x) {
    const double t = clamp((x - low) / (high - low), 0, 1);
    return t * t * (3 - 2 * t);
}

vec mirrored(vec p) {
    return {std::abs(p.x), p.y, p.z};
}

// Turn about z, in degrees, counter-clockwise.
vec rolled(vec p, double degrees) {
    const double a = degrees * M_PI / 180, c = std::cos(a), s = std::sin(a);
    return {c * p.x + s * p.y, -s * p.x + c * p.y, p.z};
}

// A head on its back in the water: the forehead a little under, the chin up.
vec afloat(vec p) {
    const double a = 6 * M_PI / 180, c = std::cos(a), s = std::sin(a);
    return {p.x, c * p.y - s * p.z, s * p.y + c * p.z + 0.05};
}

double sphere(vec p, vec centre, double radius) {
    return length(p - centre) - radius;
}

double ellipsoid(vec p, vec centre, vec radii) {
    const vec q = p - centre;
    const double k0 = length(q / radii),
                 k1 = length(q / (vec{radii.x * radii.x, radii.y * radii.y, radii.z * radii.z}));
    return k1 > 1e-9 ? k0 * (k0 - 1) / k1 : -std::min({radii.x, radii.y, radii.z});
}

// A limb that tapers from radius ra at a to rb at b.
double limb(vec p, vec a, vec b, double ra, double rb) {
    const vec ab = b - a;
    const double t = clamp(dot(p - a, ab) / dot(ab, ab), 0, 1);
    return length(p - a - ab * t) - (ra + (rb - ra) * t);
}

// The hull of two balls: like a limb, with sides that touch both.
double cone(vec p, vec a, vec b, double ra, double rb) {
    const vec ba = b - a, pa = p - a;
    const double l2 = dot(ba, ba), rr = ra - rb, a2 = l2 - rr * rr;
    const double y = dot(pa, ba), z = y - l2;
    const vec side = pa * l2 - ba * y;
    const double x2 = dot(side, side), y2 = y * y * l2, z2 = z * z * l2;
    const double k = std::copysign(rr * rr * x2, rr);
    if (std::copysign(a2 * z2, z) > k)
        return std::sqrt(x2 + z2) / l2 - rb;
    if (std::copysign(a2 * y2, y) < k)
        return std::sqrt(x2 + y2) / l2 - ra;
    return (std::sqrt(x2 * a2 / l2) + y * rr) / l2 - ra;
}

double block(vec p, vec centre, vec half, double round) {
    const vec q = mirrored(p - centre);
    const vec d{q.x - half.x + round, std::abs(q.y) - half.y + round,
                std::abs(q.z) - half.z + round};
    const vec out{std::max(d.x, 0.0), std::max(d.y, 0.0), std::max(d.z, 0.0)};
    return length(out) + std::min(std::max({d.x, d.y, d.z}), 0.0) - round;
}

double join(double a, double b, double k) {
    const double h = std::max(k - std::abs(a - b), 0.0) / k;
    return std::min(a, b) - h * h * h * k / 6;
}

double carve(double a, double b, double k) {
    return -join(-a, b, k);
}

double hash(int x, int y, int z) {
    uint32_t h = uint32_t(x) * 374761393u + uint32_t(y) * 668265263u + uint32_t(z) * 2246822519u;
    h = (h ^ (h >> 13)) * 1274126177u;
    return ((h ^ (h >> 16)) & 0xFFFFFF) / double(0x7FFFFF) - 1;
}

double noise(vec p) {
    const int x = int(std::floor(p.x)), y = int(std::floor(p.y)), z = int(std::floor(p.z));
    const auto ease = [](double t) { return t * t * (3 - 2 * t); };
    const double u = ease(p.x - x), v = ease(p.y - y), w = ease(p.z - z);
    const auto mix = [](double a, double b, double t) { return a + (b - a) * t; };
    const auto row = [&](int j, int k) {
        return mix(hash(x, y + j, z + k), hash(x + 1, y + j, z + k), u);
    };
    return mix(mix(row(0, 0), row(1, 0), v), mix(row(0, 1), row(1, 1), v), w);
}

double fractal(vec p, int octaves) {
    double sum = 0, gain = 0.5;
    for (int i = 0; i < octaves; i++, gain *= 0.5, p = p * 2.03 + vec{3.1, 1.7, 5.3})
        sum += gain * noise(p);
    return sum;
}

// Height over the eyelids' line, which bows downwards over a sleeping eye.
double lidline(vec q) {
    return q.y + 0.045 - 0.9 * q.x * q.x;
}

double eye(double d, vec m) {
    d = carve(d,
              ellipsoid(rolled(m - vec{0.275, 0.085, 0.70}, -6), {0, 0, 0}, {0.175, 0.105, 0.22}),
              0.17);
    const vec q = m - vec{0.270, 0.055, 0.455};
    double lid = ellipsoid(q, {0, 0, 0}, {0.160, 0.135, 0.150});
    lid += 0.012 * smoothstep(0.0, -0.02, lidline(q));
    lid -= 0.008 * std::exp(-std::pow((lidline(q) - 0.004) / 0.012, 2));
    lid += 0.010 * std::exp(-std::pow((lidline(q) + 0.012) / 0.007, 2));
    d = join(d, lid, 0.045);
    const double crease = q.y - 0.062 + 1.1 * (q.x - 0.01) * (q.x - 0.01);
    return d +
           0.014 * std::exp(-std::pow(crease / 0.012, 2)) * smoothstep(0.16, 0.08, std::abs(q.x));
}

double nose(double d, vec p, vec m) {
    d = join(d, limb(p, {0, 0.20, 0.575}, {0, -0.14, 0.745}, 0.046, 0.056), 0.14);
    d = join(d, ellipsoid(p, {0, -0.190, 0.765}, {0.076, 0.068, 0.078}), 0.07);
    d = join(d, ellipsoid(m, {0.104, -0.222, 0.675}, {0.054, 0.054, 0.078}), 0.05);
    d = join(d, ellipsoid(p, {0, -0.218, 0.670}, {0.115, 0.048, 0.110}), 0.04);
    d = join(d, limb(p, {0, -0.235, 0.745}, {0, -0.270, 0.660}, 0.022, 0.026), 0.04);
    return carve(
        d, ellipsoid(rolled(m - vec{0.058, -0.268, 0.715}, 25), {0, 0, 0}, {0.022, 0.012, 0.026}),
        0.02);
}

// The lips swell between their rims and fall into the line where they meet; faces.py paints them.
double mouth(double d, vec p, vec m) {
    d = join(d, ellipsoid(p, {0, -0.455, 0.465}, {0.25, 0.19, 0.180}), 0.16);
    const double half = 0.205, along = clamp(1 - std::pow(m.x / half, 2), 0, 1);
    const double meet = -0.450 - 0.008 * std::exp(-std::pow(m.x / 0.035, 2)) +
                        0.7 * std::pow(std::max(m.x - 0.09, 0.0), 2);
    const double upper = 0.062 * along - 0.012 * std::exp(-std::pow(m.x / 0.024, 2));
    const double lower = 0.082 * std::pow(along, 0.85);
    const double over = p.y - meet, t = over > 0 ? over / (upper + 0.001) : -over / (lower + 0.001);
    const double front = smoothstep(0.40, 0.52, p.z);
    const double swell = over > 0 ? 0.060 * smoothstep(1.25, 0.10, t) * (1 - std::exp(-t / 0.10))
                                  : 0.066 * smoothstep(1.35, 0.30, t) * (1 - std::exp(-t / 0.16));
    d -= front * swell * std::pow(along, 0.8);
    d += 0.007 * front * std::exp(-std::pow(over / 0.008, 2)) * smoothstep(0.215, 0.16, m.x);
    d = carve(d, limb(p, {0, -0.30, 0.725}, {0, -0.375, 0.735}, 0.014, 0.024), 0.05);
    return carve(d, ellipsoid(p, {0, -0.580, 0.690}, {0.13, 0.030, 0.05}), 0.10);
}

// Height over the line where the hair begins; faces.py paints it.
double hairline(vec m) {
    return m.y - 0.70 + 0.9 * m.x * m.x + 9 * std::pow(std::max(m.x - 0.48, 0.0), 2) +
           0.05 * smoothstep(0.05, 0.0, m.x);
}

// A sleeping face.
double face(vec at) {
    const vec p = afloat(at);
    const vec m = mirrored(p);
    double d = ellipsoid(p, {0, 0.28, -0.20}, {0.68, 0.76, 0.86});
    d = join(d, ellipsoid(p, {0, -0.06, 0.02}, {0.58, 0.76, 0.60}), 0.34);
    d = join(d, ellipsoid(p, {0, 0.42, 0.18}, {0.52, 0.34, 0.46}), 0.20);
    d = join(d, limb(m, {0.38, -0.36, 0.02}, {0.11, -0.68, 0.38}, 0.130, 0.145), 0.26);
    d = join(d, ellipsoid(p, {0, -0.50, 0.12}, {0.38, 0.30, 0.42}), 0.20);
    d = join(d, ellipsoid(p, {0, -0.705, 0.455}, {0.15, 0.115, 0.125}), 0.20);
    d = join(d, ellipsoid(m, {0.39, -0.12, 0.33}, {0.16, 0.17, 0.15}), 0.34);
    d = carve(d, ellipsoid(m, {0.46, -0.40, 0.54}, {0.08, 0.16, 0.10}), 0.30);
    d = join(d, limb(m, {0.10, 0.215, 0.555}, {0.42, 0.235, 0.405}, 0.055, 0.040), 0.13);
    d = eye(d, m);
    d = nose(d, p, m);
    d = mouth(d, p, m);
    const double fold = std::abs(m.x - (0.165 + 0.30 * (-0.24 - p.y)));
    d += 0.008 * std::exp(-std::pow(fold / 0.040, 2)) * smoothstep(-0.22, -0.28, p.y) *
         smoothstep(-0.44, -0.36, p.y);
    const double brows = m.y - 0.232 - 0.05 * std::sin((m.x - 0.12) * 9);
    d -= 0.010 * std::exp(-std::pow(brows / 0.026, 2)) * smoothstep(0.09, 0.14, m.x) *
         smoothstep(0.46, 0.34, m.x);
    const double over = hairline(m);
    const double strand =
        fractal({std::atan2(p.x, p.y + 0.5) * 44 + 2 * fractal(p * 2, 2), length(p) * 1.5, 4}, 3);
    d -= smoothstep(-0.03, 0.14, over) * (0.030 + 0.035 * strand);
    return d + 0.0012 * fractal(p * 38, 3) * smoothstep(0.0, -0.1, over);
}

// One row of teeth on an arch; up is +1 for the upper jaw and -1 for the lower.
double teeth(vec p, double gum, double up) {
    const vec arch{p.x, p.y, p.z - 0.270};
    const double angle = std::atan2(arch.x, arch.z), radius = std::hypot(arch.x, arch.z * 0.84);
    const double pitch = 0.165;
    const double index = std::round(std::abs(angle) / pitch - 0.5) + 0.5;
    if (index > 6)
        return 1;
    const double side = (std::abs(angle) - index * pitch) * 0.34;
    const double tall = 0.056 - 0.005 * std::abs(index - 0.5) + (index == 2.5 ? 0.010 : 0);
    const double y = up * (p.y - gum);
    const double width = 0.0265 - 0.008 * smoothstep(-0.02, 0.10, y) - 0.004 * (up < 0);
    return block({side, y, radius - 0.318}, {0, 0, 0}, {width, tall, 0.036}, 0.020);
}

double skullfront(double d, vec p, vec m) {
    const double brow = limb(m, {0.10, 0.185, 0.575}, {0.46, 0.205, 0.36}, 0.062, 0.055);
    d = join(d, brow, 0.12);
    d = join(d, limb(m, {0.30, -0.16, 0.50}, {0.50, -0.09, 0.33}, 0.085, 0.075), 0.12);
    d = join(d, limb(m, {0.50, -0.09, 0.33}, {0.60, 0.00, -0.30}, 0.062, 0.055), 0.06);
    d = join(d, limb(m, {0.47, 0.18, 0.34}, {0.52, -0.08, 0.30}, 0.045, 0.050), 0.06);
    d = join(d, limb(p, {0, 0.16, 0.575}, {0, -0.02, 0.635}, 0.048, 0.036), 0.09);
    d = join(d, limb(m, {0.10, -0.06, 0.56}, {0.14, -0.30, 0.52}, 0.055, 0.075), 0.09);
    d = carve(d,
              ellipsoid(rolled(m - vec{0.280, 0.045, 0.50}, -14), {0, 0, 0}, {0.180, 0.150, 0.37}),
              0.05);
    const double hole =
        join(ellipsoid(rolled(m - vec{0.052, -0.215, 0.58}, 12), {0, 0, 0}, {0.050, 0.085, 0.16}),
             ellipsoid(p, {0, -0.11, 0.60}, {0.040, 0.085, 0.12}), 0.05);
    d = carve(d, hole, 0.03);
    return join(d, limb(p, {0, -0.18, 0.47}, {0, -0.29, 0.56}, 0.012, 0.014), 0.02);
}

double jaw(vec p, vec m) {
    double d = limb(m, {0.0, -0.735, 0.47}, {0.17, -0.715, 0.41}, 0.080, 0.085);
    d = join(d, limb(m, {0.17, -0.715, 0.41}, {0.43, -0.48, 0.06}, 0.090, 0.080), 0.08);
    d = join(d, limb(m, {0.43, -0.48, 0.06}, {0.53, -0.04, 0.04}, 0.080, 0.060), 0.08);
    d = join(d, limb(m, {0.0, -0.610, 0.620}, {0.25, -0.600, 0.42}, 0.058, 0.052), 0.06);
    d = join(d, ellipsoid(p, {0, -0.62, 0.28}, {0.28, 0.10, 0.27}), 0.08);
    return join(d, ellipsoid(p, {0, -0.755, 0.51}, {0.12, 0.070, 0.075}), 0.09);
}

double skull(vec at) {
    const vec p = afloat(at);
    const vec m = mirrored(p);
    double d = ellipsoid(p, {0, 0.29, -0.21}, {0.69, 0.74, 0.86});
    d = join(d, ellipsoid(p, {0, 0.41, 0.17}, {0.52, 0.34, 0.46}), 0.20);
    d = carve(d, ellipsoid(m, {0.80, 0.02, 0.22}, {0.22, 0.30, 0.30}), 0.20);
    d = join(d, ellipsoid(p, {0, -0.10, 0.20}, {0.36, 0.34, 0.34}), 0.14);
    d = skullfront(d, p, m);
    d = join(d, ellipsoid(p, {0, -0.32, 0.32}, {0.275, 0.125, 0.28}), 0.10);
    d = join(d, limb(m, {0.0, -0.355, 0.615}, {0.25, -0.350, 0.42}, 0.052, 0.048), 0.06);
    d = carve(d, ellipsoid(m, {0.36, -0.30, 0.50}, {0.10, 0.09, 0.12}), 0.12);
    d = join(d, teeth(p, -0.425, 1), 0.030);
    double lower = jaw(p, m);
    lower = join(lower, teeth(p, -0.532, -1), 0.030);
    d = std::min(d, lower);
    const double seam = std::abs(fractal({p.x * 22, p.y * 22, 3}, 2) * 0.03 + p.x);
    d += 0.006 * smoothstep(0.006, 0.0, seam) * smoothstep(0.45, 0.55, p.y);
    d += 0.010 * std::max(0.0, fractal(p * 7, 4) - 0.12);
    return d + 0.0035 * fractal(p * 26, 4);
}

// A pulsing heart of flesh: two lobes that meet in a point, with the swell of muscle.
double heart(vec p) {
    const vec m = mirrored(p);
    const double lobe = cone({m.x, m.y, p.z * 1.12}, {0.40, 0.34, 0}, {0.02, -0.78, 0}, 0.50, 0.07);
    const double d = join(lobe, cone(p, {0, 0.16, 0}, {0, -0.78, 0}, 0.34, 0.07), 0.16);
    const vec bent = p + vec{fractal(p * 2.2, 2), fractal(p * 2.2 + vec{7, 0, 0}, 2), 0} * 0.22;
    const double fibre = fractal({bent.x * 9 + bent.y * 3, bent.y * 1.6, p.z * 3}, 3);
    const double vein = std::abs(fractal({bent.x * 2.6 + 2, bent.y * 1.5 + 5, 3}, 2));
    return d - 0.016 * fibre - 0.024 * std::exp(-std::pow(vein / 0.045, 2));
}

// Half a head above a pool: the height of its skin over z = 0, with rings that run from the shore.
double pool(vec p, const std::function<double(vec)>& shore) {
    const double d = std::max(shore({p.x, p.y, 0.0}), 0.0);
    const double rings = 0.016 * std::cos(d * 26) * std::exp(-d * 0.9) * smoothstep(0.0, 0.12, d);
    const double wind = 0.016 * fractal({p.x * 1.6 + 9, p.y * 2.6, 0}, 3);
    return 0.045 * std::exp(-d / 0.05) + rings + wind;
}

struct solid_s {
    std::function<double(vec)> distance;
    vec low, high;
};

solid_s solid(const std::string& name) {
    static const std::map<std::string, solid_s> solids{
        {"face", {face, {-0.9, -1.2, -0.15}, {0.9, 1.25, 1.0}}},
        {"skull", {skull, {-0.9, -1.2, -0.15}, {0.9, 1.25, 1.0}}},
        {"heart", {heart, {-1.1, -1.0, -0.6}, {1.1, 1.1, 0.6}}},
        {"facepool",
         {[](vec p) { return p.z - pool(p, face); }, {-4, -2.6, -0.12}, {4, 3.2, 0.12}}},
        {"skullpool",
         {[](vec p) { return p.z - pool(p, skull); }, {-4, -2.6, -0.12}, {4, 3.2, 0.12}}},
    };
    const auto found = solids.find(name);
    if (found == solids.end()) {
        fprintf(stderr, "no solid %s\n", name.c_str());
        exit(1);
    }
    return found->second;
}

class nets_c {
public:
    nets_c(const solid_s& solid, double cell)
        : solid(solid), cell(cell), nx(cells(solid.low.x, solid.high.x)),
          ny(cells(solid.low.y, solid.high.y)), nz(cells(solid.low.z, solid.high.z)),
          field(size_t(nx + 1) * (ny + 1) * (nz + 1), 1.0f) {
        sample();
        place();
        connect();
    }

    void write(const char* path) const {
        FILE* file = fopen(path, "wb");
        const int32_t counts[2] = {int32_t(vertices.size() / 3), int32_t(quads.size() / 4)};
        fwrite(counts, sizeof counts, 1, file);
        fwrite(vertices.data(), sizeof(float), vertices.size(), file);
        fwrite(quads.data(), sizeof(int32_t), quads.size(), file);
        fclose(file);
    }

private:
    int cells(double low, double high) const { return int(std::ceil((high - low) / cell)); }
    size_t at(int x, int y, int z) const { return (size_t(z) * (ny + 1) + y) * (nx + 1) + x; }
    vec point(double x, double y, double z) const { return solid.low + vec{x, y, z} * cell; }

    // Distances are exact only near the surface: coarse blocks that cannot hold any are skipped.
    void sample() {
        constexpr int step = 8;
        for (int z = 0; z <= nz; z += step)
            for (int y = 0; y <= ny; y += step)
                for (int x = 0; x <= nx; x += step)
                    sampleblock(x, y, z, step);
    }

    void sampleblock(int x0, int y0, int z0, int step) {
        const double middle =
            solid.distance(point(x0 + step * 0.5, y0 + step * 0.5, z0 + step * 0.5));
        const bool far = std::abs(middle) > step * cell * 2.2;
        for (int z = z0; z < std::min(z0 + step, nz + 1); z++)
            for (int y = y0; y < std::min(y0 + step, ny + 1); y++)
                for (int x = x0; x < std::min(x0 + step, nx + 1); x++)
                    field[at(x, y, z)] = float(far ? middle : solid.distance(point(x, y, z)));
    }

    // One vertex in every cell that the surface crosses, at the mean of its edge crossings.
    void place() {
        index.assign(field.size(), -1);
        for (int z = 0; z < nz; z++)
            for (int y = 0; y < ny; y++)
                for (int x = 0; x < nx; x++)
                    placeone(x, y, z);
    }

    void placeone(int x, int y, int z) {
        vec sum{0, 0, 0};
        int crossings = 0;
        for (int corner = 0; corner < 8; corner++)
            for (int axis = 0; axis < 3; axis++) {
                if (corner & (1 << axis))
                    continue;
                const int other = corner | (1 << axis);
                const auto value = [&](int c) {
                    return field[at(x + (c & 1), y + (c >> 1 & 1), z + (c >> 2 & 1))];
                };
                const double a = value(corner), b = value(other);
                if ((a < 0) == (b < 0))
                    continue;
                const double t = a / (a - b);
                sum = sum +
                      vec{double(corner & 1), double(corner >> 1 & 1), double(corner >> 2 & 1)} +
                      vec{axis == 0 ? t : 0, axis == 1 ? t : 0, axis == 2 ? t : 0};
                crossings++;
            }
        if (!crossings)
            return;
        index[at(x, y, z)] = int32_t(vertices.size() / 3);
        const vec p = point(x, y, z) + sum * (cell / crossings);
        vertices.insert(vertices.end(), {float(p.x), float(p.y), float(p.z)});
    }

    void connect() {
        for (int z = 1; z < nz; z++)
            for (int y = 1; y < ny; y++)
                for (int x = 1; x < nx; x++) {
                    const bool inside = field[at(x, y, z)] < 0;
                    if (inside != (field[at(x + 1, y, z)] < 0))
                        quad(inside, at(x, y - 1, z - 1), at(x, y, z - 1), at(x, y, z),
                             at(x, y - 1, z));
                    if (inside != (field[at(x, y + 1, z)] < 0))
                        quad(inside, at(x - 1, y, z - 1), at(x - 1, y, z), at(x, y, z),
                             at(x, y, z - 1));
                    if (inside != (field[at(x, y, z + 1)] < 0))
                        quad(inside, at(x - 1, y - 1, z), at(x, y - 1, z), at(x, y, z),
                             at(x - 1, y, z));
                }
    }

    void quad(bool outwards, size_t a, size_t b, size_t c, size_t d) {
        if (!outwards)
            std::swap(b, d);
        quads.insert(quads.end(), {index[a], index[b], index[c], index[d]});
    }

    solid_s solid;
    double cell;
    int nx, ny, nz;
    std::vector<float> field;
    std::vector<int32_t> index, quads;
    std::vector<float> vertices;
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        fprintf(stderr, "usage: sculpt SHAPE CELL FILE\n");
        return 1;
    }
    nets_c(solid(argv[1]), atof(argv[2])).write(argv[3]);
}
